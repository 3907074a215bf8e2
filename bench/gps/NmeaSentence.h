#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bench {

// The parts of an NMEA 0183 sentence, "$GPGGA,123519.00,...*47". The views point into its text.
struct NmeaSentence {
  std::string_view talker;               // "GP", "GN", "II", ...
  std::string_view type;                 // "GGA", ...
  std::vector<std::string_view> fields;  // after the type

  // Empty when the sentence has fewer fields.
  std::string_view Field(std::size_t index) const { return index < fields.size() ? fields[index] : ""; }
};

enum class NmeaVerdict {
  kGood,
  kCutShort,     // no checksum at the end
  kBadChecksum,  // the checksum does not match
  kGarbage       // too long, or not printable ASCII
};

// Splits the text of one sentence, from "$" to the end of its line. `sentence` is valid when the verdict is
// kGood.
NmeaVerdict SplitSentence(std::string_view text, NmeaSentence& sentence);

// Reads a decimal number as an integer in units of the last of `decimals`, rounded half away from zero:
// "12.345" with two decimals is 1235. Returns false when it is malformed or too long.
bool ReadDecimals(std::string_view text, int decimals, std::int64_t& value);

// Reads "hhmmss" or "hhmmss.sss" as milliseconds of the day.
bool ReadTimeOfDay(std::string_view text, std::int64_t& ms);

// Reads "ddmmyy" as the number YYYYMMDD. Years 80 to 99 are 1980 to 1999.
bool ReadDate(std::string_view text, std::uint32_t& date);

// Reads "dddmm.mmmm" and its hemisphere as ten-thousandths of a minute, rounded. The hemisphere is `positive`
// or `negative`, which gives the sign.
bool ReadAngle(std::string_view text, std::string_view hemisphere, char positive, char negative,
               std::int64_t& e4Min);

}  // namespace bench
