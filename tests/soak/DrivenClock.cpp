// Linked into the process before the C library, whose functions it replaces.
#include "DrivenClock.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace {

DrivenClock& Clock() {
  static DrivenClock& clock = [&]() -> DrivenClock& {
    const char* path = std::getenv("DRIVEN_CLOCK");
    const int fd = path != nullptr ? open(path, O_RDWR | O_CLOEXEC) : -1;
    void* page = mmap(nullptr, sizeof(DrivenClock), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (page == MAP_FAILED) std::abort();
    close(fd);
    return *static_cast<DrivenClock*>(page);
  }();
  return clock;
}

int Wait(int fd, epoll_event* events, int capacity, int timeoutMs) {
  return static_cast<int>(syscall(SYS_epoll_pwait, fd, events, capacity, timeoutMs, nullptr, 0));
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t id, timespec* tp) noexcept {
  const long result = syscall(SYS_clock_gettime, id, tp);
  const bool boot = id == CLOCK_BOOTTIME || id == CLOCK_MONOTONIC;
  if (result != 0 || (!boot && id != CLOCK_REALTIME)) return static_cast<int>(result);
  const std::int64_t offsetMs = boot ? Clock().bootOffsetMs : Clock().utcOffsetMs;
  const std::int64_t nowMs = std::int64_t{tp->tv_sec} * 1000 + tp->tv_nsec / 1000000 + offsetMs;
  tp->tv_sec = static_cast<std::time_t>(nowMs / 1000);
  tp->tv_nsec = static_cast<long>(nowMs % 1000) * 1000000 + tp->tv_nsec % 1000000;
  return 0;
}

int epoll_wait(int fd, epoll_event* events, int maxevents, int timeout) {
  const int ready = Wait(fd, events, maxevents, 0);
  if (ready != 0 || timeout == 0) return ready;
  DrivenClock& clock = Clock();
  const std::int32_t ahead = clock.aheadMs.load();
  if (ahead == 0 || timeout < 0) return Wait(fd, events, maxevents, timeout);
  const std::int32_t leap = std::min(ahead, timeout);
  clock.bootOffsetMs += leap;
  clock.utcOffsetMs += leap;
  clock.heapBytes = static_cast<std::int64_t>(mallinfo2().uordblks);
  clock.aheadMs -= leap;
  return 0;
}
}
