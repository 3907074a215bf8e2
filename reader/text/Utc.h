#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace reader {

// Marks an unknown UTC.
constexpr std::int64_t kNoUtc = std::numeric_limits<std::int64_t>::min();

// ISO 8601 with milliseconds, "2024-05-01T12:00:00.000Z"; "-" for kNoUtc.
std::string UtcText(std::int64_t utcMs);

// Appends what UtcText returns. Fast for times in order.
class UtcWriter {
 public:
  void Append(std::int64_t utcMs, std::string& text);

 private:
  std::int64_t day_ = kNoUtc;
  char date_[16] = {};
};

// Reads "2024-05-01", "2024-05-01T12:00", "2024-05-01T12:00:30.25Z" or "2024-05-01T14:00+02:00". Without zone
// the time is UTC; a blank may replace the T. Returns false for any other text.
bool ReadUtc(std::string_view text, std::int64_t& utcMs);

}  // namespace reader
