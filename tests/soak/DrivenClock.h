#pragma once

#include <atomic>
#include <cstdint>

// The clocks of a process that a test drives, in a file that both map; its name is in the environment
// variable DRIVEN_CLOCK. The process's clocks run as the machine's do, moved by the two offsets. Where it
// would wait for messages, and none is there, it takes the time from `aheadMs` instead, as long as there is
// any: both clocks leap, and the wait is over.
struct DrivenClock {
  std::int64_t bootOffsetMs;  // of the clocks that count from the start of the system
  std::int64_t utcOffsetMs;
  std::int64_t heapBytes;             // in use at the last leap
  std::atomic<std::int32_t> aheadMs;  // the test adds, the process takes
};
