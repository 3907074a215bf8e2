#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "system/Process.h"

// The system watchdog, spoken to through the service manager's notification socket (the
// environment variable NOTIFY_SOCKET, read at Subscribe). Where nobody listens every operation
// does nothing. No operation blocks; a notice that the socket cannot take at once is lost, which
// the next pet mends.
class Watchdog {
 public:
  Watchdog(e_Process process, e_ThreadIds thread);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  // Promises a pet at least every `periodSeconds`. True on success, also where nobody listens;
  // false when the period is 0 or the socket named cannot be used. May be called again.
  bool Subscribe(unsigned int periodSeconds);

  // Tells that the process is alive: READY=1 with the first pet after Subscribe, then WATCHDOG=1,
  // at most one every quarter of the period however often it is called. Nothing before Subscribe.
  void PetWatchdog();

  // Says STOPPING=1, if subscribed; nothing is said afterwards.
  void Unsubscribe();

 private:
  void Say(const char* text);

  std::int64_t periodMs_ = 0;  // 0: not subscribed
  std::int64_t nextPetMs_ = 0;
  bool readySaid_ = false;
  int fd_ = -1;
};
