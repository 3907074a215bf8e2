#pragma once

#include <array>
#include <cstdint>
#include <vector>

// The distances between the records of a source that reports at regular times: which is the usual one,
// and where there are gaps. Memory does not depend on their number.
class Intervals {
 public:
  static constexpr double kGapFactor = 2.5;  // so many times the usual distance is a gap

  struct Gap {
    std::int64_t fromUtcMs = 0;
    std::int64_t lengthMs = 0;
  };
  struct Summary {
    double usualMs = 0;  // 0 where there are too few to say
    std::int64_t coveredMs = 0;
    std::int64_t gaps = 0;
    std::vector<Gap> longest;  // the longest first
  };

  void Add(std::int64_t tick, std::int64_t utcMs);
  // Up to a tick, which is the end of the run.
  Summary Summarize(std::int64_t endTick) const;

 private:
  // Four buckets for each doubling.
  static constexpr std::size_t kBuckets = 160;
  static constexpr std::size_t kLongest = 3;
  struct Bucket {
    std::int64_t count = 0;
    std::int64_t sumMs = 0;
  };

  static void Insert(Gap gap, std::vector<Gap>& longest);

  std::array<Bucket, kBuckets> buckets_{};
  std::vector<Gap> longest_;
  std::int64_t count_ = 0;
  std::int64_t lastTick_ = 0;
  std::int64_t lastUtcMs_ = 0;
  bool any_ = false;
};
