#include "Deadline.h"

#include <algorithm>
#include <climits>

#include "os/MonotonicClock.h"

namespace ipc {

// Adds one millisecond, because the clock returns whole milliseconds: a wait is never too short.
Deadline::Deadline(int timeoutMs)
    : endMs_(timeoutMs < 0 ? -1 : os::MonotonicMs() + timeoutMs + (timeoutMs > 0 ? 1 : 0)) {}

int Deadline::RemainingMs() const {
  if (endMs_ < 0) return -1;
  return static_cast<int>(std::clamp<std::int64_t>(endMs_ - os::MonotonicMs(), 0, INT_MAX));
}

}  // namespace ipc
