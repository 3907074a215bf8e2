#pragma once

#include <string>

#include "system/Process.h"

// IPC name of the state manager. Every process defines and sets it.
extern std::string gStateMgrName;

// True when the environment variable RUN_WITHOUT_STATEMGR exists: nothing is sent to the state
// manager and nothing is waited for.
bool RunsWithoutStateMgr();

// The payload of the notices that carry a process.
class ProcessPayload {
 public:
  static constexpr unsigned int kSize = 4;

  explicit ProcessPayload(e_Process process);
  char* Bytes() { return bytes_; }

  // The process that a payload of at least kSize bytes names.
  static e_Process Read(const unsigned char* payload);

 private:
  char bytes_[kSize];
};
