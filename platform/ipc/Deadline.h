#pragma once

#include <cstdint>

// Milliseconds of the monotonic clock.
std::int64_t MonotonicMs();
// The same, some milliseconds behind, for next to nothing.
std::int64_t CoarseMonotonicMs();

// A moment by which something is to be done.
class Deadline {
 public:
  // `timeoutMs` from now; negative: never.
  explicit Deadline(int timeoutMs);

  // Milliseconds left, 0 when passed, -1 when there is no end: as poll and epoll take it.
  int RemainingMs() const;

 private:
  std::int64_t endMs_;  // negative: never
};
