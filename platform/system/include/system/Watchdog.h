#pragma once

#include <cstdint>
#include <memory>

#include "system/Servers.h"

// The threads of a process, for the watchdog. A process with one thread uses 0.
enum e_ThreadIds : unsigned int { e_ThreadIds_Main = 0 };

// The system watchdog, reached through the service manager's notification socket. Subscribe reads the
// socket's name from the environment variable NOTIFY_SOCKET: an absolute path, or "@" and an abstract name.
// Without it, every operation does nothing. No operation blocks; a notice that the socket does not take at
// once is lost, and a later pet replaces it.
class Watchdog {
 public:
  Watchdog(e_Process process, e_ThreadIds thread);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  // Promises a pet at least every `periodSeconds`. Returns true on success, also without NOTIFY_SOCKET.
  // Returns false and changes nothing when the period is 0, NOTIFY_SOCKET is invalid or the socket cannot be
  // created. A second call starts again from the beginning.
  bool Subscribe(unsigned int periodSeconds);

  // Reports that the process is alive. Sends READY=1 on the first pet after Subscribe, then WATCHDOG=1, at
  // most once per quarter of the period. Does nothing before Subscribe.
  void PetWatchdog();

  // Sends STOPPING=1 if subscribed, then nothing more.
  void Unsubscribe();

 private:
  struct Listener;

  bool Say(const char* text);

  std::int64_t periodMs_ = 0;  // 0: not subscribed
  std::int64_t nextPetMs_ = 0;
  bool readySaid_ = false;
  std::unique_ptr<Listener> listener_;  // null without NOTIFY_SOCKET
};
