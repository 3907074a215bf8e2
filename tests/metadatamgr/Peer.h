#pragma once

#include <memory>
#include <string>

#include "ipc/LinxIpc.h"

// Another process of the car, played by the test. Payloads are hex.
class Peer {
 public:
  explicit Peer(const std::string& name);

  // Sends to MetadataMgr, as soon as it is there and takes it.
  void Send(unsigned int type, const std::string& payload = "");

  // The payload of the next message of this type; "nothing" when none comes.
  std::string Await(unsigned int type);
  std::string Ask(unsigned int type, const std::string& payload, unsigned int answer);

  // True when no message is waiting here that was not awaited.
  bool HasHeardNothing();

  // The process ends.
  void Leave() { ipc_.reset(); }

 private:
  std::unique_ptr<LinxIpc> ipc_;
};
