#pragma once

#include <string>

#include "system/Servers.h"

// Endpoint name of the state manager. Every process defines and sets it.
extern std::string gStateMgrName;

// True when the environment variable RUN_WITHOUT_STATEMGR exists: the process then sends nothing to the state
// manager and does not wait for it.
bool RunsWithoutStateMgr();

// The payload of notices about a process: its number.
class ProcessPayload {
 public:
  static constexpr unsigned int kSize = 4;

  explicit ProcessPayload(e_Process process);
  char* Bytes() { return bytes_; }

  // Reads the process from a payload of at least kSize bytes.
  static e_Process Read(const unsigned char* payload);

 private:
  char bytes_[kSize];
};
