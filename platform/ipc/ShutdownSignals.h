#pragma once

#include <csignal>

// SIGTERM and SIGINT as input of the receive loop. While caught they are blocked and arrive on a
// descriptor; at other times they do what they did before.
class ShutdownSignals {
 public:
  ShutdownSignals() = default;
  ~ShutdownSignals();
  ShutdownSignals(const ShutdownSignals&) = delete;
  ShutdownSignals& operator=(const ShutdownSignals&) = delete;

  // Both may be called again without effect. Catch returns 0 or an errno value. A signal that came
  // before Release and was not taken is forgotten.
  int Catch();
  void Release();

  // Readable when a signal came; -1 while none is caught.
  int fd() const { return fd_; }
  // Takes one signal; false when none came.
  bool Take();

 private:
  int fd_ = -1;
  sigset_t maskBefore_{};
};
