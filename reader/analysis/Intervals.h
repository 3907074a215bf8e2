#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace reader {

// The usual distance between the records of a source that reports at regular times. Memory does not depend on
// their number.
class Intervals {
 public:
  void Add(std::int64_t tick);
  // 0 where there are too few to say.
  double UsualMs() const;

 private:
  // Four buckets for each doubling.
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
