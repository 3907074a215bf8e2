#include "Deadline.h"

#include <climits>
#include <ctime>

std::int64_t MonotonicMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

// One more than asked for, since the clock is read in whole milliseconds: a wait is never short.
Deadline::Deadline(int timeoutMs)
    : endMs_(timeoutMs < 0 ? -1 : MonotonicMs() + timeoutMs + (timeoutMs > 0 ? 1 : 0)) {}

int Deadline::RemainingMs() const {
  if (endMs_ < 0) return -1;
  const std::int64_t left = endMs_ - MonotonicMs();
  return left > 0 ? static_cast<int>(left < INT_MAX ? left : INT_MAX) : 0;
}
