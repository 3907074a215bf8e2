#pragma once

#include <algorithm>
#include <cstdint>

#include "GpsFix.h"

namespace reader {

// Milliseconds since the start of a run. Times of damaged records are limited to some thousand years, so that
// sums cannot overflow.
class RunClock {
 public:
  explicit RunClock(std::int64_t firstTick) : firstTick_(firstTick) {}

  std::int64_t Ms(std::int64_t tick) const {
    const auto ms = static_cast<std::uint64_t>(tick) - static_cast<std::uint64_t>(firstTick_);
    return std::clamp(static_cast<std::int64_t>(ms), -kMostMs, kMostMs);
  }
  // Time of the event: its sender tick if that is usable, else its arrival tick.
  std::int64_t Ms(const Row& row) const { return Ms(EventTick(row)); }
  // UTC of the record; kNoUtc also if it is before 1970 or after 9999.
  static std::int64_t UtcMs(const Row& row) {
    return row.utcMs >= 0 && row.utcMs <= kLastUtcMs ? row.utcMs : kNoUtc;
  }

 private:
  static constexpr std::int64_t kMostMs = 100'000'000'000'000;
  static constexpr std::int64_t kLastUtcMs = 253'402'300'799'999;  // end of the year 9999

  std::int64_t firstTick_;
};

}  // namespace reader
