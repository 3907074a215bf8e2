#pragma once

#include <cstdint>

namespace store {

// The 32-bit system tick, extended to 64 bits that never go back. The lower half is the tick.
class ArrivalTick {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;
  static constexpr std::uint32_t kJitterMs = 1000;

  // The time until the first Advance; kNone counts as 0.
  void Start(std::uint32_t tick);

  // kNone is ignored. A tick that is behind by no more than the jitter moves nothing. Every other one
  // is ahead, across the wrap too; true when it is more than half the range ahead: ticks have begun
  // anew, and the distance says nothing about the time that has passed.
  bool Advance(std::uint32_t tick);

  std::int64_t Now() const { return now_; }
  std::uint32_t Last() const { return last_; }  // as told; kNone before the first

  // How much later than Now() this tick is, less than 0 for earlier: the shorter way round.
  std::int64_t Distance(std::uint32_t tick) const {
    return static_cast<std::int32_t>(tick - static_cast<std::uint32_t>(now_));
  }

 private:
  std::int64_t now_ = 0;
  std::uint32_t last_ = kNone;
};

}  // namespace store
