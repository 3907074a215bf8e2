#pragma once

#include "Actions.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The verbs with which the director asks MetadataMgr. They wait up to kAnswerTimeoutMs for the answer. A
// drive that runs `speed` times faster asks for a shorter time.
Actions MetadataMgrActions(LinxIpc& ipc, double speed);

// Subscribes to MetadataMgr's bookmark item. `handler` gets the notices that no action waits for.
Outcome SubscribeToBookmarks(LinxIpc& ipc, LinxIpc::Handler handler, void* context);

}  // namespace bench
