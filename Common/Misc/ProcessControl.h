#pragma once

#include "ipc/LinxIpc.h"
#include "system/Messages.h"
#include "system/Servers.h"

// The parts of ProcessInitializer that do not depend on the managed object. ProcessInitializer derives from
// this class, so that they are its static members. Handlers have the endpoint's signature.
class ProcessControl {
 protected:
  // Sends a message to the state manager; logs and returns false on failure.
  static bool NotifyStateMgr(LinxIpc& ipc, IpcMessage& message);

  // Handler of LogLevelMsg_Set and LogLevelMsg_Get: answers with the log level, which Set changes first.
  static void HandleLogLevel(LinxIpc* ipc, void* context);

  // Handler that does nothing, for messages that the caller of Receive handles.
  static void IgnoreHandler(LinxIpc* ipc, void* context);

  // Answers the state manager's quit notice, unless running without the state manager.
  static void RespondToShutdown(LinxIpc& ipc);

  // Reads the process from a death or restart notice. Logs and returns false when the payload is missing or
  // too short.
  static bool ReadNoticeProcess(LinxIpc& ipc, e_Process& process);
};
