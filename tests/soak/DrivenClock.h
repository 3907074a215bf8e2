#pragma once

#include <atomic>
#include <cstdint>

// The clocks of a process that a test drives. Both map the file that the environment variable DRIVEN_CLOCK
// names. The clocks of the process run as those of the machine, shifted by the two offsets. When the process
// would wait for messages, it takes time from `aheadMs` instead, while there is any: both clocks jump, and
// the wait ends.
struct DrivenClock {
  std::int64_t bootOffsetMs;  // of clocks that count from system start
  std::int64_t utcOffsetMs;
  std::int64_t heapBytes;             // in use at the last jump
  std::atomic<std::int32_t> aheadMs;  // the test adds, the process subtracts
};
