#include "Deadline.h"

#include <climits>
#include <ctime>

namespace {

std::int64_t MsOf(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

}  // namespace

std::int64_t MonotonicMs() {
  return MsOf(CLOCK_MONOTONIC);
}

std::int64_t CoarseMonotonicMs() {
  return MsOf(CLOCK_MONOTONIC_COARSE);
}

// One more than asked for, since the clock is read in whole milliseconds: a wait is never short.
Deadline::Deadline(int timeoutMs)
    : endMs_(timeoutMs < 0 ? -1 : MonotonicMs() + timeoutMs + (timeoutMs > 0 ? 1 : 0)) {}

int Deadline::RemainingMs() const {
  if (endMs_ < 0) return -1;
  const std::int64_t left = endMs_ - MonotonicMs();
  return left > 0 ? static_cast<int>(left < INT_MAX ? left : INT_MAX) : 0;
}
