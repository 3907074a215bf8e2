#pragma once

#include <sys/un.h>

#include <cstdint>

#include "system/Process.h"

// The system watchdog, spoken to through the service manager's notification socket (the
// environment variable NOTIFY_SOCKET, read at Subscribe: an absolute path, or "@" and an abstract
// name; missing or empty where nobody listens, every operation does nothing then). No operation
// blocks; a notice that the socket cannot take at once is lost, which a later pet mends.
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
  bool Say(const char* text);

  std::int64_t periodMs_ = 0;  // 0: not subscribed
  std::int64_t nextPetMs_ = 0;
  bool readySaid_ = false;
  int fd_ = -1;
  sockaddr_un address_{};
  unsigned int addressSize_ = 0;  // 0: nobody listens
};
