#include "FollowedServers.h"
#include "ManagerLog.h"

void MetadataMgr::ProcessDied(LinxIpc& /*ipc*/, e_Process process) {
  kManagerLog(kLogTrace, "Process Died ", unsigned{process});
}

// A server that is switched off may have no client; its renewal then fails. Ignores processes outside the
// table, since the manager has no subscription with them.
void MetadataMgr::ProcessRestarted(LinxIpc& /*ipc*/, e_Process process) {
  kManagerLog(kLogTrace, "Process Restarted ", unsigned{process});
  for (const FollowedServer& followed : FollowedServers()) {
    if (followed.process != process) continue;
    kManagerLog(kLogInfo, "Need to resubscribe to ", followed.renewalName);
    SubscribeClient* client = followed.client(*this);
    if (client == nullptr || client->Resubscribe() != 0) {
      kManagerLog(kLogError, "MetadataMgr FAILED to resubsribe to a server");
    }
    return;
  }
}
