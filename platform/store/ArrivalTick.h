#pragma once

#include <cstdint>

namespace store {

// The 32-bit system tick, extended to 64 bits that never go back while it wraps.
class ArrivalTick {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

  // The time until the first Advance; kNone counts as 0.
  void Start(std::uint32_t tick);

  // kNone is ignored. A tick up to half the range ahead is later, across the wrap too; one that is
  // behind moves nothing until the ticks have caught up.
  void Advance(std::uint32_t tick);

  std::int64_t Now() const { return now_; }
  std::uint32_t Last() const { return last_; }  // as told; kNone before the first

 private:
  std::int64_t now_ = 0;
  std::int64_t unwrapped_ = 0;
  std::uint32_t last_ = kNone;
};

}  // namespace store
