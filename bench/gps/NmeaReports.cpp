#include "NmeaReports.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace bench {

namespace {

using Text = std::string_view;

// Reads a field that may be empty. Returns false when it is malformed.
template <typename Value, typename Read>
bool ReadOptional(Text text, std::optional<Value>& value, Read read) {
  value.reset();
  if (text.empty()) return true;
  Value there{};
  if (!read(text, there)) return false;
  value = there;
  return true;
}

bool ReadOptional(Text text, int decimals, std::optional<std::int64_t>& value) {
  return ReadOptional(text, value, [decimals](Text word, std::int64_t& there) {
    return ReadDecimals(word, decimals, there);
  });
}

bool ReadPlace(const NmeaSentence& sentence, std::size_t first, std::optional<NmeaPlace>& place) {
  return ReadOptional(sentence.Field(first), place, [&](Text latitude, NmeaPlace& there) {
    return ReadAngle(latitude, sentence.Field(first + 1), 'N', 'S', there.latitudeE4Min) &&
           ReadAngle(sentence.Field(first + 2), sentence.Field(first + 3), 'E', 'W', there.longitudeE4Min);
  });
}

// Converts the mode of RMC and GLL into a quality. Without a mode it is a plain fix.
std::uint32_t QualityOfMode(Text mode) {
  struct Row {
    Text mode;
    std::uint32_t quality;
  };
  constexpr Row kRows[] = {{"N", 0}, {"D", 2}, {"P", 3}, {"R", 4}, {"F", 5}, {"E", 6}, {"M", 7}, {"S", 8}};
  const auto* row =
      std::find_if(std::begin(kRows), std::end(kRows), [mode](Row r) { return r.mode == mode; });
  return row == std::end(kRows) ? 1 : row->quality;
}

}  // namespace

bool ReadGga(const NmeaSentence& sentence, NmeaPosition& position) {
  constexpr std::int64_t kMaxAltitudeDeciMetres = 1'000'000;
  std::optional<std::int64_t> quality;
  std::optional<std::int64_t> used;
  if (!ReadOptional(sentence.Field(0), position.timeMs, ReadTimeOfDay) ||
      !ReadOptional(sentence.Field(5), 0, quality) || !ReadOptional(sentence.Field(6), 0, used) ||
      quality.value_or(0) < 0 || quality.value_or(0) > 8 || used.value_or(0) < 0) {
    return false;
  }
  position.quality = static_cast<std::uint32_t>(quality.value_or(0));
  position.satellitesUsed = used.value_or(0);
  if (position.quality == 0) return true;
  return ReadPlace(sentence, 1, position.place) &&
         ReadOptional(sentence.Field(8), 1, position.altitudeDeciMetres) &&
         std::abs(position.altitudeDeciMetres.value_or(0)) <= kMaxAltitudeDeciMetres;
}

bool ReadRmc(const NmeaSentence& sentence, NmeaPosition& position) {
  if (!ReadOptional(sentence.Field(0), position.timeMs, ReadTimeOfDay) ||
      !ReadOptional(sentence.Field(8), position.date, ReadDate)) {
    return false;
  }
  position.quality = sentence.Field(1) == "A" ? QualityOfMode(sentence.Field(11)) : 0;
  if (position.quality == 0) return true;
  return ReadPlace(sentence, 2, position.place) &&
         ReadOptional(sentence.Field(6), 3, position.motion.knotsE3) &&
         ReadOptional(sentence.Field(7), 1, position.motion.courseE1);
}

bool ReadGll(const NmeaSentence& sentence, NmeaPosition& position) {
  if (!ReadOptional(sentence.Field(4), position.timeMs, ReadTimeOfDay)) return false;
  position.quality = sentence.Field(5) == "A" ? QualityOfMode(sentence.Field(6)) : 0;
  return position.quality == 0 || ReadPlace(sentence, 0, position.place);
}

bool ReadVtg(const NmeaSentence& sentence, NmeaMotion& motion) {
  return sentence.Field(1) == "T" && ReadOptional(sentence.Field(0), 1, motion.courseE1) &&
         ReadOptional(sentence.Field(4), 3, motion.knotsE3) &&
         ReadOptional(sentence.Field(6), 3, motion.kmhE3);
}

bool ReadGsa(const NmeaSentence& sentence, std::uint32_t& dimensions) {
  constexpr std::size_t kFields = 14;  // mode, dimensions, twelve satellites; then precisions
  const Text text = sentence.Field(1);
  if (sentence.fields.size() < kFields || (text != "1" && text != "2" && text != "3")) return false;
  dimensions = text == "1" ? 0 : static_cast<std::uint32_t>(text[0] - '0');
  return true;
}

bool ReadGsv(const NmeaSentence& sentence, NmeaSatellites& satellites) {
  constexpr std::size_t kFirst = 3;  // per satellite: number, elevation, azimuth, decibels
  if (!ReadDecimals(sentence.Field(2), 0, satellites.inView) || satellites.inView < 0) return false;
  for (std::size_t field = kFirst; field + 3 < sentence.fields.size(); field += 4) {
    std::optional<std::int64_t> decibels;
    if (!ReadOptional(sentence.Field(field + 3), 0, decibels)) return false;
    if (decibels) satellites.bestDecibels = std::max(satellites.bestDecibels.value_or(0), *decibels);
  }
  satellites.first = sentence.Field(1) == "1";
  return true;
}

}  // namespace bench
