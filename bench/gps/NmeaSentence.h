#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// A sentence of NMEA 0183, "$GPGGA,123519.00,...*47", taken apart. Views into the text.
struct NmeaSentence {
  std::string_view talker;               // "GP", "GN", "II", ...
  std::string_view type;                 // "GGA", ...
  std::vector<std::string_view> fields;  // behind the type

  // Empty where there is none.
  std::string_view Field(std::size_t index) const { return index < fields.size() ? fields[index] : ""; }
};

enum class NmeaVerdict {
  kGood,
  kCutShort,     // no checksum at its end
  kBadChecksum,  // another one than its characters have
  kGarbage       // too long, or characters that no sentence has
};

// Takes the text of one sentence apart, from "$" up to the end of its line. `sentence` holds
// something only when it is good.
NmeaVerdict SplitSentence(std::string_view text, NmeaSentence& sentence);

// A decimal number as an integer, with so many decimals, rounded half away from zero: "12.345" with two
// is 1235. False when it is none or too long.
bool ReadDecimals(std::string_view text, int decimals, std::int64_t& value);

// "hhmmss" or "hhmmss.sss" in milliseconds of the day.
bool ReadTimeOfDay(std::string_view text, std::int64_t& ms);

// "ddmmyy" as the number YYYYMMDD; two digits of the year from 80 on are of the last century.
bool ReadDate(std::string_view text, std::uint32_t& date);

// "dddmm.mmmm" and its hemisphere in ten-thousandths of a minute, rounded. `positive` is the
// hemisphere with that sign, `negative` the other one.
bool ReadAngle(std::string_view text, std::string_view hemisphere, char positive, char negative,
               std::int64_t& e4Min);
