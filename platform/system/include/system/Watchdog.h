#pragma once

#include <cstdint>
#include <memory>

#include "system/Process.h"

// The system watchdog, reached through the service manager's notification socket. The environment variable
// NOTIFY_SOCKET names it, read at Subscribe: an absolute path, or "@" and an abstract name. Where the
// variable is missing or empty nobody listens, and every operation does nothing. No operation blocks; a
// notice that the socket cannot take at once is lost, and a later pet makes up for it.
class Watchdog {
 public:
  Watchdog(e_Process process, e_ThreadIds thread);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  // Promises a pet at least every `periodSeconds`. True on success, also where nobody listens;
  // false when the period is 0 or NOTIFY_SOCKET names no socket, nothing has changed then. May be
  // called again: everything starts anew.
  bool Subscribe(unsigned int periodSeconds);

  // Tells that the process is alive: READY=1 with the first pet after Subscribe, then WATCHDOG=1,
  // at most one every quarter of the period however often it is called. Nothing before Subscribe.
  void PetWatchdog();

  // Says STOPPING=1, if subscribed; nothing is said afterwards.
  void Unsubscribe();

 private:
  struct Listener;

  bool Say(const char* text);

  std::int64_t periodMs_ = 0;  // 0: not subscribed
  std::int64_t nextPetMs_ = 0;
  bool readySaid_ = false;
  std::unique_ptr<Listener> listener_;  // null: nobody listens
};
