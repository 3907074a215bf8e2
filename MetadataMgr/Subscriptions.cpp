#include <string>

#include "FollowedServers.h"
#include "ManagerLog.h"
#include "clients/StreamMgrApi.h"

namespace {

constexpr const LogSource& log = kManagerLog;

constexpr unsigned int kWatchdogSeconds = 45;
constexpr int kStreamMgrTimeoutMs = 60000;

}  // namespace

bool MetadataMgr::SubscribeTo(const FollowedServer& followed, LinxIpc& ipc) {
  if ((this->*followed.subscribe)(ipc)) return true;
  log(kLogError, followed.stepFailure);
  return false;
}

// The store makes its first output between the first server and the second.
bool MetadataMgr::SubscribeToServers(LinxIpc& ipc, bool /*flag*/) {
  log(kLogTrace, "SubscribeToServers");
  if (!SubscribeTo(FollowedServers().front(), ipc)) return false;
  InitializeStore();
  for (const FollowedServer& followed : FollowedServers().subspan(1)) {
    if (!SubscribeTo(followed, ipc)) return false;
  }
  if (!watchdog.Subscribe(kWatchdogSeconds)) return false;
  // A recording that began before this process did.
  const std::string recording = StreamMgrApi::CurrentlyRecordingREID(ipc, kStreamMgrTimeoutMs);
  if (!recording.empty()) ReportRecordingEvent(true, 0, false);
  dataStore.WriteFullState(true);
  return true;
}
