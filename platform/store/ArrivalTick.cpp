#include "ArrivalTick.h"

namespace store {

void ArrivalTick::Start(std::uint32_t tick) {
  if (last_ != kNone) return;  // a store opened again goes on
  now_ = tick == kNone ? 0 : std::int64_t{tick};
}

bool ArrivalTick::Advance(std::uint32_t tick) {
  if (tick == kNone) return false;
  const std::int64_t distance = Distance(tick);
  const bool first = last_ == kNone;
  last_ = tick;
  if (first) {
    // It decides where time begins, whatever that was taken for until now.
    now_ = now_ + distance < 0 ? std::int64_t{tick} : now_ + distance;
    return false;
  }
  if (distance < 0 && distance >= -std::int64_t{kJitterMs}) return false;
  now_ += tick - static_cast<std::uint32_t>(now_);
  return distance < 0;
}

}  // namespace store
