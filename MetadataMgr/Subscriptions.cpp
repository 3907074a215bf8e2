#include <string>

#include "FollowedServers.h"
#include "ManagerLog.h"
#include "clients/StreamMgrApi.h"

namespace {

constexpr unsigned int kWatchdogSeconds = 45;
constexpr int kStreamMgrTimeoutMs = 60000;

}  // namespace

bool MetadataMgr::SubscribeTo(const FollowedServer& followed, LinxIpc& ipc) {
  if ((this->*followed.subscribe)(ipc)) return true;
  kManagerLog(kLogError, followed.stepFailure);
  return false;
}

// Initialises the store between the first and the second server.
bool MetadataMgr::SubscribeToServers(LinxIpc& ipc, bool /*flag*/) {
  kManagerLog(kLogTrace, "SubscribeToServers");
  if (!SubscribeTo(FollowedServers().front(), ipc)) return false;
  InitializeStore();
  for (const FollowedServer& followed : FollowedServers().subspan(1)) {
    if (!SubscribeTo(followed, ipc)) return false;
  }
  if (!watchdog.Subscribe(kWatchdogSeconds)) return false;
  // The video recording may have started before this process.
  const std::string recording = StreamMgrApi::CurrentlyRecordingREID(ipc, kStreamMgrTimeoutMs);
  if (!recording.empty()) ReportRecordingEvent(true, 0, false);
  dataStore.WriteFullState(true);
  return true;
}
