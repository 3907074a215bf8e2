#include "ShutdownSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace {

sigset_t Signals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
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
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return 0;
}

void ShutdownSignals::Release() {
  if (fd_ < 0) return;
  close(std::exchange(fd_, -1));
  const sigset_t signals = Signals();
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}

bool ShutdownSignals::Take() {
  signalfd_siginfo info{};
  return fd_ >= 0 && read(fd_, &info, sizeof info) == sizeof info;
}
