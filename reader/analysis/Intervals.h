#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace reader {

// The median interval between the records of a periodic source, from a histogram of fixed size.
class Intervals {
 public:
  void Add(std::int64_t tick);
  // 0 if there are too few records.
  double UsualMs() const;

 private:
  // Each doubling of the interval has four buckets.
  static constexpr std::size_t kBuckets = 160;
  struct Bucket {
    std::int64_t count = 0;
    std::int64_t sumMs = 0;
  };

  std::array<Bucket, kBuckets> buckets_{};
  std::int64_t count_ = 0;
  std::int64_t lastTick_ = 0;
  bool any_ = false;
};

}  // namespace reader
