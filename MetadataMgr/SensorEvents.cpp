#include "ItemHandler.h"
#include "ManagerLog.h"
#include "Subscribing.h"
#include "items/CrashItem.h"
#include "items/MicStatusResponse.h"
#include "items/TempStatus.h"

namespace {

constexpr unsigned int kLastMicrophone = 3;

}  // namespace

bool MetadataMgr::SubscribeToMicMgr(LinxIpc& ipc) {
  return subscribing::SubscribeAndReport<e_Process_MicMgr, MicStatusResponse>(
      micClient, ipc, this, [this](const MicStatusResponse& status) { ReportMicStatus(status, false); });
}

bool MetadataMgr::SubscribeToAccelHal(LinxIpc& ipc) {
  return subscribing::SubscribeAndReport<e_Process_AccelHal, CrashItem>(
      accelHalClient, ipc, this, [this](const CrashItem& item) { HandleCrash(item.crash, item.tick); });
}

bool MetadataMgr::SubscribeToTempHal(LinxIpc& ipc) {
  return subscribing::SubscribeAndReport<e_Process_TempHal, TempStatus>(
      tempHalClient, ipc, this, [this](const TempStatus& temp) { ReportTempChange(temp, false); });
}

void MetadataMgr::ReportMicState(e_MicrophonePosition mic, bool present, bool active, unsigned int tick,
                                 bool report) {
  dataStore.ReportMicPresent(mic, present, report, tick);
  dataStore.ReportMicState(mic, active, report, tick);
}

void MetadataMgr::ReportMicStatus(const MicStatusResponse& status, bool report) {
  kManagerLog(kLogInfo, "ReportMicStatus");
  for (const MicStatusResponse::Entry& entry : status) {
    kManagerLog(kLogDetail, unsigned{entry.mic}, " active=", entry.active, " present=", entry.present);
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
    kManagerLog(kLogError, "ReportMicState: Invalid mic no ", mic);
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
