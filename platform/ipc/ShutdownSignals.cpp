#include "ShutdownSignals.h"

#include <sys/signalfd.h>

#include <csignal>

namespace ipc {

os::Errno ShutdownSignals::Catch() {
  if (signals_.IsOpen()) return 0;
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  signals_.Reset(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
  if (!signals_.IsOpen()) return os::Errno::Last();
  return sigprocmask(SIG_BLOCK, &signals, nullptr) == 0 ? 0 : errno;
}

bool ShutdownSignals::Take() {
  signalfd_siginfo info{};
  return signals_.IsOpen() && read(Fd(), &info, sizeof info) == sizeof info;
}

}  // namespace ipc
