#include "ShutdownSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT};

sigset_t Signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kSignals) sigaddset(&signals, signal);
  return signals;
}

}  // namespace

ShutdownSignals::~ShutdownSignals() {
  Release();
}

int ShutdownSignals::Catch() {
  if (fd_ >= 0) return 0;
  const sigset_t signals = Signals();
  fd_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (fd_ < 0) return errno;
  sigprocmask(SIG_BLOCK, &signals, &maskBefore_);
  return 0;
}

void ShutdownSignals::Release() {
  if (fd_ < 0) return;
  while (Take()) {
  }
  close(std::exchange(fd_, -1));
  sigset_t unblock;
  sigemptyset(&unblock);
  for (const int signal : kSignals) {
    if (sigismember(&maskBefore_, signal) == 0) sigaddset(&unblock, signal);
  }
  sigprocmask(SIG_UNBLOCK, &unblock, nullptr);
}

bool ShutdownSignals::Take() {
  signalfd_siginfo info{};
  return fd_ >= 0 && read(fd_, &info, sizeof info) == sizeof info;
}
