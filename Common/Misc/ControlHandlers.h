#pragma once

#include "ipc/LinxIpc.h"
#include "system/Messages.h"
#include "system/Process.h"

// The parts of process control that do not depend on the managed object.

// Handler of LogLevelMsg_Set and LogLevelMsg_Get: answers the sender with the level in force.
void HandleLogLevel(LinxIpc* ipc, void* context);

// Handler that does nothing, for messages that are looked at after the receive.
void IgnoreHandler(LinxIpc* ipc, void* context);

// Answers the state manager's quit notice, unless running without it.
void RespondToShutdown(LinxIpc& ipc);

// Reads the process out of a death or restart notice: true and the process; false, after a line,
// when the notice has no payload or one that is too short.
bool ReadNoticeProcess(LinxIpc& ipc, e_Process& process);
