#pragma once

#include "Actions.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The verbs that send requests to MetadataMgr. Each waits up to kAnswerTimeoutMs for the answer. At a
// `speed` of 2, "pings" lasts half as long.
Actions MetadataMgrActions(LinxIpc& ipc, double speed);

// Subscribes to MetadataMgr's bookmark item. `handler` receives the notices that no action waits for.
Outcome SubscribeToBookmarks(LinxIpc& ipc, LinxIpc::Handler handler, void* context);

}  // namespace bench
