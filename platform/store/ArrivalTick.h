#pragma once

#include <cstdint>

#include "RecordTime.h"

namespace store {

// The 32-bit system tick, extended to 64 bits that never go back. The lower half is the tick.
class ArrivalTick {
 public:
  static constexpr std::uint32_t kJitterMs = 1000;

  // The time until the first Advance; kNoTick counts as 0.
  void Start(std::uint32_t tick);

  // kNoTick is ignored. A tick that is behind by no more than the jitter moves nothing. Every other one
  // is ahead, across the wrap too; true when it is more than half the range ahead: ticks have begun
  // anew, and the distance says nothing about the time that has passed.
  bool Advance(std::uint32_t tick);

  // The clock of the ticks shows this one: moves ahead only, and Last() stays.
  void Follow(std::uint32_t tick);

  std::int64_t Now() const { return now_; }
  std::uint32_t Last() const { return last_; }  // as told; kNoTick before the first

  // Milliseconds from Now() to this tick, less than 0 for earlier: the shorter way round.
  std::int64_t DistanceMs(std::uint32_t tick) const { return TickDistanceMs(now_, tick); }

 private:
  std::int64_t now_ = 0;
  std::uint32_t last_ = kNoTick;
};

}  // namespace store
