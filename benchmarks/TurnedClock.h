#pragma once

#include <cstdint>

#include "store/StoreOptions.h"

// A clock that the benchmark moves forward, so that the store sees as much time pass as needed.
class TurnedClock : public StoreClock {
 public:
  unsigned int TickMs() const override { return tick; }
  std::int64_t UtcMs() const override { return std::int64_t{1714564800000} + tick; }
  unsigned int tick = 1000;
};
