#pragma once

#include <cstdint>

namespace ipc {

// The end of a wait on the monotonic clock.
class Deadline {
 public:
  // Ends `timeoutMs` from now; negative: never.
  explicit Deadline(int timeoutMs);

  // Milliseconds left for poll and epoll: 0 after the end, -1 without an end.
  int RemainingMs() const;

 private:
  std::int64_t endMs_;  // negative: never
};

}  // namespace ipc
