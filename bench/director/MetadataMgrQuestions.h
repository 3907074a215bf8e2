#pragma once

#include "Actions.h"
#include "ipc/LinxIpc.h"

// The verbs with which the director asks MetadataMgr. They wait for the answer, up to
// kAnswerTimeoutMs. Times are those of a drive that runs so many times faster.
Actions MetadataMgrActions(LinxIpc& ipc, double speed);

// Subscribes to the bookmark item; a notice that no action waits for is handled by `handler`.
Outcome SubscribeToBookmarks(LinxIpc& ipc, LinxIpc::Handler handler, void* context);
