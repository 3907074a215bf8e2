#pragma once

#include <string>

#include "ipc/LinxIpc.h"
#include "system/Process.h"

// Messages between the state manager and the processes it starts. Payload fields are big-endian.
enum StateMgrProcessMsg : unsigned int {
  StateMgrProcessMsg_Started = 13232,           // 32-bit e_Process of the sender
  StateMgrProcessMsg_Subscribe = 13233,         // byte 0: flag for SubscribeToServers
  StateMgrProcessMsg_Subscribed = 13234,        // byte 0: 1 if the subscriptions succeeded, else 0
  StateMgrProcessMsg_FullRun = 13235,           // nothing
  StateMgrProcessMsg_Restarted = 13236,         // 32-bit e_Process of the restarted process
  StateMgrProcessMsg_ShutdownResponse = 13239,  // nothing
  StateMgrProcessMsg_FailedStart = 13244,       // 32-bit e_Process of the sender
};

// IPC name of the state manager. Every process defines and sets it.
extern std::string gStateMgrName;

// True when the environment variable RUN_WITHOUT_STATEMGR exists: nothing is sent to the state
// manager and nothing is waited for.
bool RunsWithoutStateMgr();

// Sends a message to the state manager; logs and returns false when that fails.
bool NotifyStateMgr(LinxIpc& ipc, IpcMessage& message);

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
