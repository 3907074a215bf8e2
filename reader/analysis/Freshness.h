#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Row.h"

namespace reader {

// Returns whether the row's table is recorded at regular intervals. Other tables are recorded on change:
// their last value stays valid.
bool IsPeriodic(const Row& row);

// Tells when the value of a periodic source has expired: its last record is older than 2 s and than five
// times the median interval of its last records.
class Freshness {
 public:
  // Call for every record that is not restated, in order.
  void Add(std::int64_t tick);
  // Age at which the value expires.
  std::int64_t LimitMs() const;
  // Time since the last record; 0 while the value is valid.
  std::int64_t SilentMs(std::int64_t tick) const;

 private:
  static constexpr std::size_t kRemembered = 15;

  std::array<std::int64_t, kRemembered> distancesMs_{};  // ring buffer
  std::size_t count_ = 0;
  std::int64_t lastTick_ = 0;
  bool any_ = false;
};

}  // namespace reader
