#include "Freshness.h"

#include <algorithm>

#include "Row.h"

namespace reader {
namespace {

constexpr std::int64_t kFactor = 5;
constexpr std::int64_t kLeastMs = 2000;
constexpr std::int64_t kUnknownMs = 10'000;  // limit while too few records are known
constexpr std::size_t kEnough = 3;

}  // namespace

bool IsPeriodic(const Row& row) {
  return row.known != nullptr && row.known->cadence == store::Cadence::kPeriodic;
}

void Freshness::Add(std::int64_t tick) {
  tick = WithinTime(tick);
  if (any_) distancesMs_[count_++ % kRemembered] = std::max<std::int64_t>(tick - lastTick_, 0);
  any_ = true;
  lastTick_ = tick;
}

std::int64_t Freshness::LimitMs() const {
  const std::size_t known = std::min(count_, kRemembered);
  if (known < kEnough) return kUnknownMs;
  auto distances = distancesMs_;
  const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(known / 2);
  std::nth_element(distances.begin(), middle, distances.begin() + static_cast<std::ptrdiff_t>(known));
  return std::max(kFactor * std::min(*middle, kFarthestMs / kFactor), kLeastMs);
}

std::int64_t Freshness::SilentMs(std::int64_t tick) const {
  const std::int64_t ageMs = any_ ? WithinTime(tick) - lastTick_ : 0;
  return ageMs > LimitMs() ? ageMs : 0;
}

}  // namespace reader
