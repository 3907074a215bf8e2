#include "Intervals.h"

#include <algorithm>
#include <cmath>

#include "Row.h"

namespace {

constexpr std::int64_t kEnough = 4;

}  // namespace

void Intervals::Add(std::int64_t tick, std::int64_t utcMs) {
  if (any_) {
    const std::int64_t ms = std::max<std::int64_t>(tick - lastTick_, 0);
    const auto index = static_cast<std::size_t>(4 * std::log2(static_cast<double>(ms) + 1));
    Bucket& bucket = buckets_[std::min(index, kBuckets - 1)];
    ++bucket.count;
    bucket.sumMs = WithinTime(bucket.sumMs + ms);
    ++count_;
    Insert({lastUtcMs_, ms}, longest_);
  }
  any_ = true;
  lastTick_ = tick;
  lastUtcMs_ = utcMs;
}

void Intervals::Insert(Gap gap, std::vector<Gap>& longest) {
  const auto place = std::upper_bound(longest.begin(), longest.end(), gap,
                                      [](const Gap& a, const Gap& b) { return a.lengthMs > b.lengthMs; });
  longest.insert(place, gap);
  if (longest.size() > kLongest) longest.pop_back();
}

Intervals::Summary Intervals::Summarize(std::int64_t endTick) const {
  Summary summary;
  if (count_ < kEnough) return summary;
  std::int64_t below = 0;
  for (const Bucket& bucket : buckets_) {
    below += bucket.count;
    if (2 * below < count_) continue;
    summary.usualMs = static_cast<double>(bucket.sumMs) / static_cast<double>(bucket.count);
    break;
  }
  const double gapMs = kGapFactor * std::max(summary.usualMs, 1.0);
  for (const Bucket& bucket : buckets_) {
    if (bucket.count == 0) continue;
    if (static_cast<double>(bucket.sumMs) / static_cast<double>(bucket.count) < gapMs) {
      summary.coveredMs = WithinTime(summary.coveredMs + bucket.sumMs);
    } else {
      summary.gaps += bucket.count;
    }
  }
  summary.coveredMs += std::llround(summary.usualMs);
  std::vector<Gap> longest = longest_;
  if (static_cast<double>(endTick - lastTick_) >= gapMs) {
    ++summary.gaps;
    Insert({lastUtcMs_, endTick - lastTick_}, longest);
  }
  for (const Gap& gap : longest) {
    if (summary.gaps > 0 && static_cast<double>(gap.lengthMs) >= gapMs) summary.longest.push_back(gap);
  }
  return summary;
}
