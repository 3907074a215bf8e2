#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bench {

// A sentence of NMEA 0183, "$GPGGA,123519.00,...*47", taken apart. Views into the text.
struct NmeaSentence {
  std::string_view talker;               // "GP", "GN", "II", ...
  std::string_view type;                 // "GGA", ...
  std::vector<std::string_view> fields;  // behind the type

  // Empty when the sentence has fewer fields.
  std::string_view Field(std::size_t index) const { return index < fields.size() ? fields[index] : ""; }
};

enum class NmeaVerdict {
  kGood,
  kCutShort,     // no checksum at its end
  kBadChecksum,  // it does not fit the characters
  kGarbage       // too long, or with characters that sentences do not have
};

// Takes the text of one sentence apart, from "$" to the end of its line. `sentence` is valid when the verdict
// is kGood.
NmeaVerdict SplitSentence(std::string_view text, NmeaSentence& sentence);

// Reads a decimal number as an integer in units of its last decimal, rounded half away from zero: "12.345"
// with two decimals is 1235. False when it is malformed or too long.
bool ReadDecimals(std::string_view text, int decimals, std::int64_t& value);

// "hhmmss" or "hhmmss.sss" in milliseconds of the day.
bool ReadTimeOfDay(std::string_view text, std::int64_t& ms);

// "ddmmyy" as the number YYYYMMDD; two digits of the year from 80 on are of the last century.
bool ReadDate(std::string_view text, std::uint32_t& date);

// "dddmm.mmmm" and its hemisphere in ten-thousandths of a minute, rounded. `positive` is the
// hemisphere with that sign, `negative` the other one.
bool ReadAngle(std::string_view text, std::string_view hemisphere, char positive, char negative,
               std::int64_t& e4Min);

}  // namespace bench
