#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Row.h"

namespace reader {

// Whether records like this one come at regular times as long as all is well. All others come on change, and
// their last value holds.
bool IsPeriodic(const Row& row);

// When the value of a source that reports at regular times no longer counts: its last record is older than
// five times the usual distance of its records, and than 2 s.
class Freshness {
 public:
  // Of every record that does not restate, in their order.
  void Add(std::int64_t tick);
  // The age from which on the value does not count.
  std::int64_t LimitMs() const;
  // How long there has been no data; 0 while the value counts.
  std::int64_t SilentMs(std::int64_t tick) const;

 private:
  static constexpr std::size_t kRemembered = 15;

  std::array<std::int64_t, kRemembered> distancesMs_{};  // the last ones, as a ring
  std::size_t count_ = 0;
  std::int64_t lastTick_ = 0;
  bool any_ = false;
};

}  // namespace reader
