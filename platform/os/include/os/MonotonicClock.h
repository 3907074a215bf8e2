#pragma once

#include <cstdint>
#include <ctime>

namespace os {

inline std::int64_t MsOf(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

// Milliseconds of the monotonic clock.
inline std::int64_t MonotonicMs() {
  return MsOf(CLOCK_MONOTONIC);
}

// The same, up to 10 ms late, at a fraction of the cost.
inline std::int64_t CoarseMonotonicMs() {
  return MsOf(CLOCK_MONOTONIC_COARSE);
}

}  // namespace os
