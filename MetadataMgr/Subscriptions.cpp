#include <string>

#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "clients/StreamMgrApi.h"

namespace {

constexpr const LogSource& log = kManagerLog;
constexpr unsigned int kWatchdogSeconds = 45;
constexpr int kStreamMgrTimeoutMs = 60000;

}  // namespace

bool MetadataMgr::SubscribeToServers(LinxIpc& ipc, bool /*flag*/) {
  log(kLogTrace, "SubscribeToServers");
  InitializeStore();
  if (!watchdog_.Subscribe(kWatchdogSeconds)) return false;
  // A recording that began before this process did.
  const std::string recording = StreamMgrApi::CurrentlyRecordingREID(ipc, kStreamMgrTimeoutMs);
  if (!recording.empty()) ReportRecordingEvent(true, 0, false);
  dataStore_.WriteFullState(true);
  return true;
}
