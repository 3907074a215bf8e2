#include "Intervals.h"

#include <algorithm>
#include <cmath>

#include "Row.h"

namespace reader {
namespace {

constexpr std::int64_t kEnough = 4;

}  // namespace

void Intervals::Add(std::int64_t tick) {
  if (any_) {
    const std::int64_t ms = std::max<std::int64_t>(tick - lastTick_, 0);
    const auto index = static_cast<std::size_t>(4 * std::log2(static_cast<double>(ms) + 1));
    Bucket& bucket = buckets_[std::min(index, kBuckets - 1)];
    ++bucket.count;
    bucket.sumMs = WithinTime(bucket.sumMs + ms);
    ++count_;
  }
  any_ = true;
  lastTick_ = tick;
}

double Intervals::UsualMs() const {
  if (count_ < kEnough) return 0;
  std::int64_t below = 0;
  for (const Bucket& bucket : buckets_) {
    below += bucket.count;
    if (2 * below >= count_) return static_cast<double>(bucket.sumMs) / static_cast<double>(bucket.count);
  }
  return 0;
}

}  // namespace reader
