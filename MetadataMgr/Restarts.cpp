#include "FollowedServers.h"
#include "ManagerLog.h"

namespace {

constexpr const LogSource& log = kManagerLog;

}  // namespace

void MetadataMgr::ProcessDied(LinxIpc& /*ipc*/, e_Process process) {
  log(kLogTrace, "Process Died ", unsigned{process});
}

// A server that is switched off may have no client; its renewal then fails. Ignores processes outside the
// table, since the manager has no subscription with them.
void MetadataMgr::ProcessRestarted(LinxIpc& /*ipc*/, e_Process process) {
  log(kLogTrace, "Process Restarted ", unsigned{process});
  for (const FollowedServer& followed : FollowedServers()) {
    if (followed.process != process) continue;
    log(kLogInfo, "Need to resubscribe to ", followed.renewalName);
    SubscribeClient* client = followed.client(*this);
    if (client == nullptr || client->Resubscribe() != 0) {
      log(kLogError, "MetadataMgr FAILED to resubsribe to a server");
    }
    return;
  }
}
