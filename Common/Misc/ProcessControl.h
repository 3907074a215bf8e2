#pragma once

#include "ipc/LinxIpc.h"
#include "system/Messages.h"
#include "system/Process.h"

// The parts of ProcessInitializer that do not depend on the managed object. It derives from this class, so
// that they are its static members. Handlers have the endpoint's signature.
class ProcessControl {
 protected:
  // Sends a message to the state manager; logs and returns false when that fails.
  static bool NotifyStateMgr(LinxIpc& ipc, IpcMessage& message);

  // Handler of LogLevelMsg_Set and LogLevelMsg_Get: answers the sender with the level in force.
  static void HandleLogLevel(LinxIpc* ipc, void* context);

  // Handler that does nothing, for messages that are looked at after the receive.
  static void IgnoreHandler(LinxIpc* ipc, void* context);

  // Answers the state manager's quit notice, unless running without it.
  static void RespondToShutdown(LinxIpc& ipc);

  // Reads the process out of a death or restart notice: true and the process; false, after a line,
  // when the notice has no payload or too short a payload.
  static bool ReadNoticeProcess(LinxIpc& ipc, e_Process& process);
};
