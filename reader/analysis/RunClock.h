#pragma once

#include <algorithm>
#include <cstdint>

#include "GpsFix.h"

namespace reader {

// Milliseconds since the begin of a run. What a damaged record says stays within some thousand years, so
// that one can reckon with it.
class RunClock {
 public:
  explicit RunClock(std::int64_t firstTick) : firstTick_(firstTick) {}

  std::int64_t Ms(std::int64_t tick) const {
    const auto ms = static_cast<std::uint64_t>(tick) - static_cast<std::uint64_t>(firstTick_);
    return std::clamp(static_cast<std::int64_t>(ms), -kMostMs, kMostMs);
  }
  // Of the event, as its sender told it.
  std::int64_t Ms(const Row& row) const { return Ms(EventTick(row)); }
  // UTC of the record; kNoUtc also where it is in no year of four digits.
  static std::int64_t UtcMs(const Row& row) {
    return row.utcMs >= 0 && row.utcMs <= kLastUtcMs ? row.utcMs : kNoUtc;
  }

 private:
  static constexpr std::int64_t kMostMs = 100'000'000'000'000;
  static constexpr std::int64_t kLastUtcMs = 253'402'300'799'999;  // of the year 9999

  std::int64_t firstTick_;
};

}  // namespace reader
