#include "Keyboard.h"

#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iterator>

namespace bench {

namespace {

// For the signal handlers, which get no context.
termios modeBefore;
termios modeForKeys;

constexpr int kEndingSignals[] = {SIGHUP,  SIGQUIT, SIGILL,  SIGABRT, SIGBUS, SIGFPE,
                                  SIGSEGV, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2};
constexpr int kStoppingSignals[] = {SIGTSTP, SIGCONT};
struct sigaction endingBefore[std::size(kEndingSignals)];
struct sigaction stoppingBefore[std::size(kStoppingSignals)];

// A process in the background would be stopped when it changes the mode.
bool IsInForeground() {
  return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

void SetMode(const termios& mode) {
  if (IsInForeground()) (void)tcsetattr(STDIN_FILENO, TCSANOW, &mode);
}

// The handlers call only functions that are safe in a handler. SA_RESETHAND has restored the default action.
void RestoreAndEnd(int signal) {
  SetMode(modeBefore);
  (void)raise(signal);
}

void StopOrContinue(int signal) {
  const int error = errno;
  SetMode(signal == SIGCONT ? modeForKeys : modeBefore);
  if (signal == SIGTSTP) (void)raise(SIGSTOP);
  errno = error;
}

// Leaves signals alone that are ignored or have a handler already.
template <std::size_t kCount>
void Handle(const int (&signals)[kCount], struct sigaction (&before)[kCount], void (*handler)(int),
            int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  for (std::size_t i = 0; i < kCount; ++i) {
    (void)sigaction(signals[i], nullptr, &before[i]);
    if (before[i].sa_handler == SIG_DFL) (void)sigaction(signals[i], &action, nullptr);
  }
}

template <std::size_t kCount>
void HandleAsBefore(const int (&signals)[kCount], const struct sigaction (&before)[kCount]) {
  for (std::size_t i = 0; i < kCount; ++i) (void)sigaction(signals[i], &before[i], nullptr);
}

}  // namespace

Keyboard::Keyboard() {
  if (!IsInForeground() || tcgetattr(STDIN_FILENO, &modeBefore) != 0) return;
  modeForKeys = modeBefore;
  modeForKeys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  modeForKeys.c_cc[VMIN] = 0;
  modeForKeys.c_cc[VTIME] = 0;
  Handle(kEndingSignals, endingBefore, RestoreAndEnd, static_cast<int>(SA_RESETHAND));
  Handle(kStoppingSignals, stoppingBefore, StopOrContinue, SA_RESTART);
  SetMode(modeForKeys);
  isThere_ = true;
}

Keyboard::~Keyboard() {
  if (!isThere_) return;
  SetMode(modeBefore);
  HandleAsBefore(kEndingSignals, endingBefore);
  HandleAsBefore(kStoppingSignals, stoppingBefore);
}

// In the background a read would stop the process.
char Keyboard::NextKey() const {
  char key = 0;
  if (!isThere_ || !IsInForeground() || read(STDIN_FILENO, &key, 1) != 1) return 0;
  return key;
}

}  // namespace bench
