#pragma once

#include <cstdint>

#include "RecordTime.h"

namespace store {

// Extends the 32-bit system tick to 64 bits that never go back. The lower half is the system tick.
class ArrivalTick {
 public:
  static constexpr std::uint32_t kJitterMs = 1000;

  // Sets the tick that holds until the first Advance; kNoTick counts as 0.
  void Start(std::uint32_t tick);

  // Moves ahead to this tick, also across the wrap. Ignores kNoTick. A tick at most kJitterMs behind does not
  // move Now(). True if the tick is more than half the range ahead: the ticks have restarted, and the
  // distance is not elapsed time.
  bool Advance(std::uint32_t tick);

  // Moves ahead to a tick read from the clock. Never moves back, and does not change Last().
  void Follow(std::uint32_t tick);

  std::int64_t Now() const { return now_; }
  std::uint32_t Last() const { return last_; }  // of the last Advance; kNoTick before the first

  // Milliseconds from Now() to this tick, negative if earlier: the shorter way round the wrap.
  std::int64_t DistanceMs(std::uint32_t tick) const { return TickDistanceMs(now_, tick); }

 private:
  std::int64_t now_ = 0;
  std::uint32_t last_ = kNoTick;
};

}  // namespace store
