#include "ArrivalTick.h"

#include <algorithm>

namespace store {

void ArrivalTick::Start(std::uint32_t tick) {
  if (last_ != kNone) return;  // a store opened again goes on
  unwrapped_ = tick == kNone ? 0 : std::int64_t{tick};
  now_ = unwrapped_;
}

void ArrivalTick::Advance(std::uint32_t tick) {
  if (tick == kNone) return;
  const auto before = static_cast<std::uint32_t>(unwrapped_);
  unwrapped_ += static_cast<std::int32_t>(tick - before);
  if (last_ == kNone) {
    // The first one decides where time begins, whatever it was taken for until now.
    if (unwrapped_ < 0) unwrapped_ = tick;
    now_ = unwrapped_;
  }
  now_ = std::max(now_, unwrapped_);
  last_ = tick;
}

}  // namespace store
