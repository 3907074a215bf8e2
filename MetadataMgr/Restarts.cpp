#include "ManagerLog.h"
#include "MetadataMgr.h"

namespace {

constexpr const LogSource& log = kManagerLog;

}  // namespace

void MetadataMgr::ProcessDied(LinxIpc& /*ipc*/, e_Process process) {
  log(kLogTrace, "Process Died ", unsigned{process});
}

// A server that is switched off has no client; its renewal fails like a refused one. A restart of
// a process that is not listed is none of this one's business.
void MetadataMgr::ProcessRestarted(LinxIpc& /*ipc*/, e_Process process) {
  log(kLogTrace, "Process Restarted ", unsigned{process});
  const struct {
    e_Process process;
    SubscribeClient* client;
    const char* text;
  } renewals[] = {
      {e_Process_StateMgr, stateMgrClient_.get(), "Need to resubscribe to StateMgr"},
      {e_Process_ConfigMgr, configClient_.get(), "Need to resubscribe to ConfigMgr"},
      {e_Process_Fpga, fpgaClient_.get(), "Need to resubscribe to FpgaHal"},
      {e_Process_RadarHal, radarHalClient_.get(), "Need to resubscribe to RadarHal"},
      {e_Process_MicMgr, micClient_.get(), "Need to resubscribe to MicMgr"},
      {e_Process_GpsHal, gpsHalClient_.get(), "Need to resubscribe to GpsHal"},
      {e_Process_AccelHal, accelHalClient_.get(), "Need to resubscribe to AccelHal"},
      {e_Process_TempHal, tempHalClient_.get(), "Need to resubscribe to TempHal"},
      {e_Process_VideoMgr, videoMgrClient_.get(), "Need to resubscribe to VideoMgr"},
      {e_Process_ExternalMgr, externalMgrClient_.get(), "Need to resubscribe to ExternalMgr"},
  };
  for (const auto& renewal : renewals) {
    if (renewal.process != process) continue;
    log(kLogInfo, renewal.text);
    if (renewal.client == nullptr || renewal.client->Resubscribe() != 0) {
      log(kLogError, "MetadataMgr FAILED to resubsribe to a server");
    }
    return;
  }
}
