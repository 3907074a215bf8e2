#include "ArrivalTick.h"

#include <algorithm>

namespace store {

void ArrivalTick::Start(std::uint32_t tick) {
  if (last_ != kNoTick) return;  // a reopened store keeps its tick
  now_ = tick == kNoTick ? 0 : std::int64_t{tick};
}

bool ArrivalTick::Advance(std::uint32_t tick) {
  if (tick == kNoTick) return false;
  const std::int64_t distanceMs = DistanceMs(tick);
  const bool first = last_ == kNoTick;
  last_ = tick;
  if (first) {
    // The first tick sets the time and may move it back.
    now_ = now_ + distanceMs < 0 ? std::int64_t{tick} : now_ + distanceMs;
    return false;
  }
  if (distanceMs < 0 && distanceMs >= -std::int64_t{kJitterMs}) return false;
  now_ += tick - static_cast<std::uint32_t>(now_);
  return distanceMs < 0;
}

void ArrivalTick::Follow(std::uint32_t tick) {
  if (tick != kNoTick) now_ += std::max<std::int64_t>(DistanceMs(tick), 0);
}

}  // namespace store
