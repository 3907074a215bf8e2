// Loaded before the C library: a disk that stops answering as long as the file STALL stands, which then gets
// a neighbour STALL.reached; and a clock that runs SPEED times as fast, for what is measured in seconds.

#include <poll.h>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

void WaitForTheDisk() {
  const char* stall = std::getenv("STALL");
  while (stall != nullptr && access(stall, F_OK) == 0) {
    if (std::FILE* reached = std::fopen((std::string(stall) + ".reached").c_str(), "w")) {
      (void)std::fclose(reached);
    }
    (void)poll(nullptr, 0, 10);
  }
}

int Speed() {
  const char* speed = std::getenv("SPEED");
  return speed != nullptr ? std::atoi(speed) : 1;
}

}  // namespace

extern "C" {

int fsync(int fd) {
  WaitForTheDisk();
  return static_cast<int>(syscall(SYS_fsync, fd));
}

int fdatasync(int fildes) {
  WaitForTheDisk();
  return static_cast<int>(syscall(SYS_fdatasync, fildes));
}

int clock_gettime(clockid_t id, timespec* tp) noexcept {
  const long result = syscall(SYS_clock_gettime, id, tp);
  if (result != 0 || id != CLOCK_MONOTONIC) return static_cast<int>(result);
  constexpr std::int64_t kSecond = 1000000000;
  const std::int64_t now = (std::int64_t{tp->tv_sec} * kSecond + tp->tv_nsec) * Speed();
  tp->tv_sec = now / kSecond;
  tp->tv_nsec = now % kSecond;
  return 0;
}

int epoll_wait(int fd, epoll_event* events, int maxevents, int timeout) {
  const int ownTimeoutMs = timeout > 0 ? timeout / Speed() + 1 : timeout;
  return static_cast<int>(syscall(SYS_epoll_pwait, fd, events, maxevents, ownTimeoutMs, nullptr, 0));
}
}
