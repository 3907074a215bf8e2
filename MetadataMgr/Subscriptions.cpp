#include <array>
#include <iterator>
#include <string>

#include "FollowedItems.h"
#include "FollowedServers.h"
#include "ManagerLog.h"
#include "StreamingLvsStateItem.h"
#include "clients/StreamMgrApi.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "system/KvGetenv.h"

namespace {

constexpr const LogSource& log = kManagerLog;

constexpr unsigned int kWatchdogSeconds = 45;
constexpr int kStreamMgrTimeoutMs = 60000;
constexpr int kPatientTimeoutMs = 30000;  // of the configuration and the state manager
constexpr int kExternalMgrTimeoutMs = 2000;

bool IsOff(const ServerRow& server) {
  return server.offSwitch != nullptr && KvGetenv(server.offSwitch) != nullptr;
}

void TraceOperation(e_Process process, e_LogMask mask = kLogInfo) {
  log({mask}, "SubscribeTo", servers::Of(process).name);
}

// True, after a line, when the server is switched off.
bool Ignored(e_Process process) {
  const ServerRow& server = servers::Of(process);
  if (!IsOff(server)) return false;
  log(kLogDetail, "SubscribeTo", server.name, " - set to ignore ", server.name, " ");
  return true;
}

template <typename Client, typename... Arguments>
Client& MakeOnce(std::unique_ptr<Client>& client, LinxIpc& ipc, const Arguments&... arguments) {
  if (!client) client = std::make_unique<Client>(ipc, arguments...);
  return *client;
}

// Subscribes to the server's items one after the other, up to the first that it refuses. Of a server that
// is switched off the values stay as they were constructed.
template <e_Process kProcess, std::size_t kCount>
bool Fetch(SubscribeClient& client, MetadataMgr* manager, Item* const (&values)[kCount]) {
  constexpr const ServerRow& server = servers::Of(kProcess);
  static_assert(server.items.size() == kCount);
  if (IsOff(server)) return true;
  Item* const* value = std::begin(values);
  for (const ServedItem& item : server.items) {
    const FollowedItem& row = followed::Row(item.notificationId);
    if (client.Subscribe(item.id, item.notificationId, **value++, row.handler, manager) == 0) continue;
    log(kLogError, row.failure);
    return false;
  }
  return true;
}

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

bool MetadataMgr::SubscribeToConfigMgr(LinxIpc& ipc) {
  TraceOperation(e_Process_ConfigMgr, kLogTrace);
  if (Ignored(e_Process_ConfigMgr)) return true;
  VehicleInfo vehicle;
  SystemInfo system;
  DepartmentInfo department;
  Officer officer;
  VideoRecordingSettings settings;
  if (!Fetch<e_Process_ConfigMgr>(MakeOnce(configClient, ipc, kPatientTimeoutMs), this,
                                  {&vehicle, &system, &department, &officer, &settings})) {
    return false;
  }
  dataStore.ReportVehicleInfo(vehicle, false);
  dataStore.ReportSystemInfo(system, false);
  dataStore.ReportDepartmentInfo(department, false);
  dataStore.ReportOfficerInfo(officer, false);
  dataStore.ReportVideoRecordingSettings(settings, false);
  return true;
}

// The FPGA, GPS and radar keep their client when they are switched off, and report the item as it
// was constructed, so that the store has a value to begin with.

// All inputs are reported, changed or not.
bool MetadataMgr::SubscribeToFpga(LinxIpc& ipc) {
  TraceOperation(e_Process_Fpga);
  FpgaExternalEventItem item;
  if (!Fetch<e_Process_Fpga>(MakeOnce(fpgaClient, ipc), this, {&item})) return false;
  item.changedMask |= FpgaExternalEventItem::kAllInputs;
  item.reserved = 0;
  ReportExternalEvent(item, false);
  return true;
}

bool MetadataMgr::SubscribeToGpsHal(LinxIpc& ipc) {
  TraceOperation(e_Process_GpsHal);
  GpsStatusItem item;
  if (!Fetch<e_Process_GpsHal>(MakeOnce(gpsHalClient, ipc), this, {&item})) return false;
  ReportGpsStatus(item, false);
  return true;
}

// Its client subscribes by operations that name the events, in the order of the items.
bool MetadataMgr::SubscribeToStateMgr(LinxIpc& ipc) {
  using Operation = bool (StateMgrClient::*)(unsigned int, LinxIpc::Handler, void*);
  static constexpr Operation kOperations[] = {
      &StateMgrClient::SubscribeForRecordStart, &StateMgrClient::SubscribeForRecordStop,
      &StateMgrClient::SubscribeForEnterCovertMode, &StateMgrClient::SubscribeForExitCovertMode};
  static_assert(std::size(kOperations) == std::size(servers::kStateMgr));
  TraceOperation(e_Process_StateMgr);
  if (IsOff(servers::Of(e_Process_StateMgr))) return true;
  StateMgrClient& client = MakeOnce(stateMgrClient, ipc, kPatientTimeoutMs);
  const ServedItem* item = std::begin(servers::kStateMgr);
  for (const Operation operation : kOperations) {
    const FollowedItem& row = followed::Row((item++)->notificationId);
    if ((client.*operation)(row.notificationId, row.handler, this)) continue;
    log(kLogError, row.failure);
    return false;
  }
  return true;
}

bool MetadataMgr::SubscribeToRadarHal(LinxIpc& ipc) {
  TraceOperation(e_Process_RadarHal);
  RadarItem item;
  if (!Fetch<e_Process_RadarHal>(MakeOnce(radarHalClient, ipc), this, {&item})) return false;
  ReportRadarEvent(item, false);
  return true;
}

bool MetadataMgr::SubscribeToMicMgr(LinxIpc& ipc) {
  TraceOperation(e_Process_MicMgr);
  if (Ignored(e_Process_MicMgr)) return true;
  MicStatusResponse status;
  if (!Fetch<e_Process_MicMgr>(MakeOnce(micClient, ipc), this, {&status})) return false;
  ReportMicStatus(status, false);
  return true;
}

bool MetadataMgr::SubscribeToVideoMgr(LinxIpc& ipc) {
  TraceOperation(e_Process_VideoMgr);
  if (Ignored(e_Process_VideoMgr)) return true;
  VideoMgrCameraItem cameras;
  VideoMgrStreamQualityItem quality;
  if (!Fetch<e_Process_VideoMgr>(MakeOnce(videoMgrClient, ipc), this, {&cameras, &quality})) return false;
  ReportCameraItem(cameras, false);
  ReportStreamQualityItem(quality, false);
  return true;
}

bool MetadataMgr::SubscribeToAccelHal(LinxIpc& ipc) {
  TraceOperation(e_Process_AccelHal);
  if (Ignored(e_Process_AccelHal)) return true;
  CrashItem item;
  if (!Fetch<e_Process_AccelHal>(MakeOnce(accelHalClient, ipc), this, {&item})) return false;
  HandleCrash(item.crash, item.tick);
  return true;
}

bool MetadataMgr::SubscribeToTempHal(LinxIpc& ipc) {
  TraceOperation(e_Process_TempHal);
  if (Ignored(e_Process_TempHal)) return true;
  TempStatus temp;
  if (!Fetch<e_Process_TempHal>(MakeOnce(tempHalClient, ipc), this, {&temp})) return false;
  ReportTempChange(temp, false);
  return true;
}

// The values at subscription are discarded: live streaming is stored when it changes.
bool MetadataMgr::SubscribeToExternalMgr(LinxIpc& ipc) {
  TraceOperation(e_Process_ExternalMgr);
  const std::string& name = LinxServerNameList::Instance().Name(e_Process_ExternalMgr);
  ExternalMgrApi::StreamingLvsStateItem item;
  return Fetch<e_Process_ExternalMgr>(MakeOnce(externalMgrClient, ipc, name, kExternalMgrTimeoutMs), this,
                                      {&item, &item, &item, &item, &item, &item});
}
