#include "ItemHandler.h"
#include "ManagerLog.h"
#include "Subscribing.h"
#include "items/CrashItem.h"
#include "items/MicStatusResponse.h"
#include "items/TempStatus.h"

namespace {

constexpr const LogSource& log = kManagerLog;
constexpr unsigned int kLastMicrophone = 3;

}  // namespace

bool MetadataMgr::SubscribeToMicMgr(LinxIpc& ipc) {
  subscribing::Trace(e_Process_MicMgr);
  if (subscribing::Ignored(e_Process_MicMgr)) return true;
  MicStatusResponse status;
  if (!subscribing::Fetch<e_Process_MicMgr>(subscribing::MakeOnce(micClient, ipc), this, {&status}))
    return false;
  ReportMicStatus(status, false);
  return true;
}

bool MetadataMgr::SubscribeToAccelHal(LinxIpc& ipc) {
  subscribing::Trace(e_Process_AccelHal);
  if (subscribing::Ignored(e_Process_AccelHal)) return true;
  CrashItem item;
  if (!subscribing::Fetch<e_Process_AccelHal>(subscribing::MakeOnce(accelHalClient, ipc), this, {&item}))
    return false;
  HandleCrash(item.crash, item.tick);
  return true;
}

bool MetadataMgr::SubscribeToTempHal(LinxIpc& ipc) {
  subscribing::Trace(e_Process_TempHal);
  if (subscribing::Ignored(e_Process_TempHal)) return true;
  TempStatus temp;
  if (!subscribing::Fetch<e_Process_TempHal>(subscribing::MakeOnce(tempHalClient, ipc), this, {&temp}))
    return false;
  ReportTempChange(temp, false);
  return true;
}

void MetadataMgr::ReportMicState(e_MicrophonePosition mic, bool present, bool active, unsigned int tick,
                                 bool report) {
  dataStore.ReportMicPresent(mic, present, report, tick);
  dataStore.ReportMicState(mic, active, report, tick);
}

void MetadataMgr::ReportMicStatus(const MicStatusResponse& status, bool report) {
  log(kLogInfo, "ReportMicStatus");
  for (const MicStatusResponse::Entry& entry : status) {
    log(kLogDetail, unsigned{entry.mic}, " active=", entry.active, " present=", entry.present);
    ReportMicState(entry.mic, entry.present, entry.active, status.tick, report);
  }
}

void MetadataMgr::ReportTempChange(const TempStatus& temp, bool report) {
  dataStore.ReportTemp(e_TempSensors{3}, temp.sensor3Celsius, report, temp.tick);
  dataStore.ReportTemp(e_TempSensors{0}, temp.sensor0Celsius, report, temp.tick);
  dataStore.ReportTemp(e_TempSensors{1}, temp.sensor1Celsius, report, temp.tick);
  dataStore.ReportTemp(e_TempSensors{2}, temp.sensor2Celsius, report, temp.tick);
}

void MetadataMgr::HandleCrash(bool crash, unsigned int tick) {
  dataStore.ReportStateData(crash ? e_Tag_CrashDetected : e_Tag_CrashCleared, true, tick);
}

void MetadataMgr::MicStateChangedHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"MicStateChangedHandler", 10});
  if (payload == nullptr) return;
  const unsigned int mic = GetU32(payload + 4);
  if (mic > kLastMicrophone) {
    log(kLogError, "ReportMicState: Invalid mic no ", mic);
    return;
  }
  ManagerOf(context).ReportMicState(e_MicrophonePosition{mic}, payload[8] != 0, payload[9] != 0,
                                    GetU32(payload), true);
}

void MetadataMgr::MicMgrStatusHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<MicStatusResponse>(
      ipc, context, {"MicMgrStatusHandler"},
      [](MetadataMgr& manager, const MicStatusResponse& status) { manager.ReportMicStatus(status, true); });
}

void MetadataMgr::TempChangeHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<TempStatus>(
      ipc, context, {"TempChangeHandler"},
      [](MetadataMgr& manager, const TempStatus& temp) { manager.ReportTempChange(temp, true); });
}

void MetadataMgr::CrashDetectHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<CrashItem>(
      ipc, context, {"CrashDetectHandler"},
      [](MetadataMgr& manager, const CrashItem& item) { manager.HandleCrash(item.crash, item.tick); });
}
