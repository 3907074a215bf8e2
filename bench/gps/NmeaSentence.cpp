#include "NmeaSentence.h"

#include <algorithm>
#include <chrono>

#include "GpsItem.h"

namespace bench {

namespace {

constexpr std::size_t kMaxBytes = 256;  // the standard allows 82; receivers with many digits use more

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Returns -1 when `c` is not a hexadecimal digit.
int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool AllDigits(std::string_view text, std::size_t size) {
  return text.size() == size && std::all_of(text.begin(), text.end(), IsDigit);
}

// All characters must be digits.
std::int64_t NumberOf(std::string_view digits) {
  std::int64_t number = 0;
  for (const char c : digits) number = number * 10 + (c - '0');
  return number;
}

}  // namespace

NmeaVerdict SplitSentence(std::string_view text, NmeaSentence& sentence) {
  constexpr std::size_t kAddress = 6;  // "$GPGGA"
  constexpr std::size_t kTail = 3;     // "*47"
  const auto isStrange = [](char c) { return c < 0x20 || c > 0x7e; };
  if (text.size() > kMaxBytes || std::any_of(text.begin(), text.end(), isStrange))
    return NmeaVerdict::kGarbage;
  if (text.size() < kAddress + kTail || text[text.size() - kTail] != '*') return NmeaVerdict::kCutShort;
  const int high = HexDigit(text[text.size() - 2]);
  const int low = HexDigit(text[text.size() - 1]);
  if (high < 0 || low < 0) return NmeaVerdict::kCutShort;
  std::string_view body = text.substr(1, text.size() - kTail - 1);
  int sum = 0;
  for (const char c : body) sum ^= c;
  if (sum != high * 16 + low) return NmeaVerdict::kBadChecksum;
  const std::string_view address = body.substr(0, body.find(','));
  sentence.type = address.substr(address.size() < 3 ? 0 : address.size() - 3);
  sentence.talker = address.substr(0, address.size() - sentence.type.size());
  sentence.fields.clear();
  while (body.find(',') != std::string_view::npos) {
    body.remove_prefix(body.find(',') + 1);
    sentence.fields.push_back(body.substr(0, body.find(',')));
  }
  return NmeaVerdict::kGood;
}

bool ReadDecimals(std::string_view text, int decimals, std::int64_t& value) {
  constexpr std::size_t kMaxDigits = 9;
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  std::string_view rest = text.substr(std::min(point + 1, text.size()));
  if (whole.size() > kMaxDigits || whole.size() + rest.size() == 0 || !AllDigits(whole, whole.size()) ||
      !AllDigits(rest, rest.size())) {
    return false;
  }
  std::int64_t number = NumberOf(whole);
  for (int i = 0; i < decimals; ++i) {
    number = number * 10 + (rest.empty() ? 0 : rest[0] - '0');
    if (!rest.empty()) rest.remove_prefix(1);
  }
  if (!rest.empty() && rest[0] >= '5') ++number;
  value = negative ? -number : number;
  return true;
}

bool ReadTimeOfDay(std::string_view text, std::int64_t& ms) {
  constexpr std::size_t kDigits = 6;
  std::int64_t secondsMs = 0;
  if (!AllDigits(text.substr(0, kDigits), kDigits) || !ReadDecimals(text.substr(4), 3, secondsMs))
    return false;
  const std::int64_t hours = NumberOf(text.substr(0, 2));
  const std::int64_t minutes = NumberOf(text.substr(2, 2));
  constexpr std::int64_t kLeapSecondMs = 61000;
  if (hours > 23 || minutes > 59 || secondsMs >= kLeapSecondMs) return false;
  ms = (hours * 60 + minutes) * 60000 + secondsMs;
  return true;
}

bool ReadDate(std::string_view text, std::uint32_t& date) {
  if (!AllDigits(text, 6)) return false;
  const auto day = static_cast<std::uint32_t>(NumberOf(text.substr(0, 2)));
  const auto month = static_cast<std::uint32_t>(NumberOf(text.substr(2, 2)));
  const auto two = static_cast<std::uint32_t>(NumberOf(text.substr(4, 2)));
  const std::uint32_t year = two + (two >= 80 ? 1900 : 2000);
  const std::chrono::year_month_day known{std::chrono::year(static_cast<int>(year)),
                                          std::chrono::month(month), std::chrono::day(day)};
  if (!known.ok()) return false;
  date = year * 10000 + month * 100 + day;
  return true;
}

bool ReadAngle(std::string_view text, std::string_view hemisphere, char positive, char negative,
               std::int64_t& e4Min) {
  constexpr std::int64_t kMinutesPerDegreeE4 = kE4MinutesPerDegree;
  const std::size_t point = std::min(text.find('.'), text.size());
  if (point < 3 || point > 5 || !AllDigits(text.substr(0, point), point) || hemisphere.size() != 1)
    return false;
  const std::int64_t degrees = NumberOf(text.substr(0, point - 2));
  std::int64_t minutesE4 = 0;
  if (!ReadDecimals(text.substr(point - 2), 4, minutesE4)) return false;
  const bool back = hemisphere[0] == negative;
  const std::int64_t most = (positive == 'N' ? 90 : 180) * kMinutesPerDegreeE4;
  const std::int64_t total = degrees * kMinutesPerDegreeE4 + minutesE4;
  // 59.99999 minutes round to 60.0000 and carry into the degrees.
  if ((!back && hemisphere[0] != positive) || NumberOf(text.substr(point - 2, 2)) > 59 || total > most)
    return false;
  e4Min = back ? -total : total;
  return true;
}

}  // namespace bench
