#pragma once

#include <cstdint>

namespace ipc {

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

}  // namespace ipc
