#include "NmeaLog.h"

#include <algorithm>
#include <optional>

#include "GpsItem.h"
#include "NmeaFix.h"
#include "TextFile.h"

namespace bench {

namespace {

constexpr std::int64_t kSecondMs = 1000;
constexpr std::int64_t kDayMs = 24LL * 3600 * kSecondMs;

std::int64_t Distance(const std::optional<std::int64_t>& fromMs, const std::optional<std::int64_t>& toMs) {
  constexpr std::int64_t kLongestMs = 60 * kSecondMs;
  if (!fromMs || !toMs) return kSecondMs;
  const bool midnight = *toMs < *fromMs - kDayMs / 2;
  const std::int64_t distance = *toMs - *fromMs + (midnight ? kDayMs : 0);
  return distance < 0 || distance > kLongestMs ? kSecondMs : distance;
}

class Parser {
 public:
  void Line(std::string_view line) {
    if (line.starts_with('#')) return;
    // A line may lose its end and continue with the next sentence.
    std::size_t begin = std::min(line.find_first_of("$!"), line.size());
    if (line.substr(0, begin).find_first_not_of(" \t") != std::string_view::npos) ++log_.counts.garbage;
    while (begin < line.size()) {
      const std::size_t end = std::min(line.find_first_of("$!", begin + 1), line.size());
      Sentence(line.substr(begin, end - begin));
      begin = end;
    }
  }

  NmeaLog End() {
    EndMoment();
    return std::move(log_);
  }

 private:
  void Sentence(std::string_view text) {
    text = text.substr(0, text.find_last_not_of(" \t") + 1);
    NmeaSentence sentence;
    NmeaCounts& counts = log_.counts;
    switch (SplitSentence(text, sentence)) {
      case NmeaVerdict::kGood:
        break;
      case NmeaVerdict::kCutShort:
        ++counts.cutShort;
        return;
      case NmeaVerdict::kBadChecksum:
        ++counts.badChecksum;
        return;
      case NmeaVerdict::kGarbage:
        ++counts.garbage;
        return;
    }
    if (fix_.BelongsToNext(sentence)) EndMoment();
    const NmeaFix::Taken taken = fix_.Take(sentence);
    ++(taken == NmeaFix::Taken::kYes  ? counts.used
       : taken == NmeaFix::Taken::kNo ? counts.otherTypes
                                      : counts.malformed);
  }

  void EndMoment() {
    if (!fix_.Told()) return;
    fix_.Fill(item_);
    if (!log_.readings.empty()) atMs_ += Distance(lastMs_, fix_.TimeOfDayMs());
    lastMs_ = fix_.TimeOfDayMs();
    log_.readings.push_back({atMs_, item_});
    fix_.Begin();
  }

  NmeaLog log_;
  NmeaFix fix_;
  GpsStatusItem item_ = NoFix();
  std::int64_t atMs_ = 0;
  std::optional<std::int64_t> lastMs_;
};

std::string Number(std::size_t number, const char* what) {
  return number == 0 ? "" : ", " + std::to_string(number) + " " + what;
}

}  // namespace

std::size_t NmeaLog::Fixes() const {
  return static_cast<std::size_t>(std::count_if(
      readings.begin(), readings.end(), [](const NmeaReading& reading) { return reading.item.HasFix(); }));
}

std::string NmeaLog::Summary() const {
  const std::int64_t seconds = readings.empty() ? 0 : readings.back().atMs / kSecondMs;
  return std::to_string(readings.size()) + " readings, " + std::to_string(Fixes()) + " with a fix, in " +
         std::to_string(seconds) + " s; sentences: " + std::to_string(counts.used) + " used" +
         Number(counts.otherTypes, "of other types") + Number(counts.malformed, "malformed") +
         Number(counts.badChecksum, "with a wrong checksum") + Number(counts.cutShort, "cut short") +
         Number(counts.garbage, "lines of garbage");
}

NmeaLog ParseNmea(std::string_view text) {
  Parser parser;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    parser.Line(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parser.End();
}

bool ReadNmea(const std::string& path, NmeaLog& log) {
  std::string text;
  if (!ReadTextFile(path, text)) return false;
  log = ParseNmea(text);
  return true;
}

}  // namespace bench
