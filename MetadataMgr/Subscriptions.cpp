#include <algorithm>
#include <iterator>
#include <string>

#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "StreamingLvsStateItem.h"
#include "SubscriptionTable.h"
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

bool IsSet(const char* variable) {
  return KvGetenv(variable) != nullptr;
}

// True, after a line, when the variable switches a server off.
bool Ignored(const char* variable, const char* operation, const char* text) {
  if (!IsSet(variable)) return false;
  log(kLogDetail, operation, text);
  return true;
}

// Subscribes to one row of the table, or logs the row's complaint.
bool Subscribe(SubscribeClient& client, const SubscriptionRow& row, Item& item, MetadataMgr* manager) {
  if (client.Subscribe(row.itemId, row.notificationId, item, row.handler, manager) == 0) return true;
  log(kLogError, row.failure);
  return false;
}

struct Step {
  bool (MetadataMgr::*subscribe)(LinxIpc& ipc);
  const char* failure;
};

constexpr Step kFirstStep = {&MetadataMgr::SubscribeToConfigMgr,
                             "MetadataMgr - Failed to subscribe to ConfigMgr"};

// What follows once the store has made its first output.
constexpr Step kFurtherSteps[] = {
    {&MetadataMgr::SubscribeToFpga, "MetadataMgr - Failed to subscribe to External Events"},
    {&MetadataMgr::SubscribeToGpsHal, "MetadataMgr - Failed to subscribe to Gps Events"},
    {&MetadataMgr::SubscribeToStateMgr, "MetadataMgr - Failed to subscribe to StateMgr Events"},
    {&MetadataMgr::SubscribeToRadarHal, "MetadataMgr - Failed to subscribe to RadarHal Events"},
    {&MetadataMgr::SubscribeToMicMgr, "MetadataMgr - Failed to subscribe to MicMgr Events"},
    {&MetadataMgr::SubscribeToVideoMgr, "MetadataMgr - Failed to subscribe to VideoMgr Events"},
    {&MetadataMgr::SubscribeToAccelHal, "MetadataMgr - Failed to subscribe to Accelerometer Events"},
    {&MetadataMgr::SubscribeToTempHal,
     "MetadataMgr::SubscribeToServers - Failed to subscribe to TempHal Events"},
    {&MetadataMgr::SubscribeToExternalMgr, "MetadataMgr - Failed to subscribe to LVS state changes"},
};

bool Run(MetadataMgr& manager, LinxIpc& ipc, const Step& step) {
  if ((manager.*step.subscribe)(ipc)) return true;
  log(kLogError, step.failure);
  return false;
}

}  // namespace

bool MetadataMgr::SubscribeToServers(LinxIpc& ipc, bool /*flag*/) {
  log(kLogTrace, "SubscribeToServers");
  if (!Run(*this, ipc, kFirstStep)) return false;
  InitializeStore();
  for (const Step& step : kFurtherSteps) {
    if (!Run(*this, ipc, step)) return false;
  }
  if (!watchdog_.Subscribe(kWatchdogSeconds)) return false;
  // A recording that began before this process did.
  const std::string recording = StreamMgrApi::CurrentlyRecordingREID(ipc, kStreamMgrTimeoutMs);
  if (!recording.empty()) ReportRecordingEvent(true, 0, false);
  dataStore_.WriteFullState(true);
  return true;
}

bool MetadataMgr::SubscribeToConfigMgr(LinxIpc& ipc) {
  log(kLogTrace, "SubscribeToConfigMgr");
  if (Ignored("NO_CONFIGMGR", "SubscribeToConfigMgr", " - set to ignore ConfigMgr ")) return true;
  if (!configClient_) configClient_ = std::make_unique<ConfigClient>(ipc, kPatientTimeoutMs);
  VehicleInfo vehicle;
  SystemInfo system;
  DepartmentInfo department;
  Officer officer;
  VideoRecordingSettings settings;
  if (!Subscribe(*configClient_, subscriptions::kVehicleInfo, vehicle, this) ||
      !Subscribe(*configClient_, subscriptions::kSystemInfo, system, this) ||
      !Subscribe(*configClient_, subscriptions::kDepartmentInfo, department, this) ||
      !Subscribe(*configClient_, subscriptions::kOfficer, officer, this) ||
      !Subscribe(*configClient_, subscriptions::kVideoRecordingSettings, settings, this)) {
    return false;
  }
  dataStore_.ReportVehicleInfo(vehicle, false);
  dataStore_.ReportSystemInfo(system, false);
  dataStore_.ReportDepartmentInfo(department, false);
  dataStore_.ReportOfficerInfo(officer, false);
  dataStore_.ReportVideoRecordingSettings(settings, false);
  return true;
}

// The FPGA, GPS and radar keep their client when they are switched off, and report the item as it
// was constructed, so that the store has a value to begin with.

// All inputs are reported, changed or not.
bool MetadataMgr::SubscribeToFpga(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToFpga");
  if (!fpgaClient_) fpgaClient_ = std::make_unique<FpgaClient>(ipc);
  FpgaExternalEventItem item;
  if (!IsSet("NO_FPGA") && !Subscribe(*fpgaClient_, subscriptions::kExternalEvent, item, this)) return false;
  item.changedMask |= FpgaExternalEventItem::kAllInputs;
  item.reserved = 0;
  ReportExternalEvent(item, false);
  return true;
}

bool MetadataMgr::SubscribeToGpsHal(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToGpsHal");
  if (!gpsHalClient_) gpsHalClient_ = std::make_unique<GpsHalClient>(ipc);
  GpsStatusItem item;
  if (!IsSet("NO_GPSHAL") && !Subscribe(*gpsHalClient_, subscriptions::kGpsStatus, item, this)) return false;
  ReportGpsStatus(item, false);
  return true;
}

bool MetadataMgr::SubscribeToStateMgr(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToStateMgr");
  if (IsSet("RUN_WITHOUT_STATEMGR")) return true;
  if (!stateMgrClient_) stateMgrClient_ = std::make_unique<StateMgrClient>(ipc, kPatientTimeoutMs);
  const auto subscribed = [&](const StateMgrSubscription& row) {
    if ((stateMgrClient_.get()->*row.subscribe)(row.notificationId, row.handler, this)) return true;
    log(kLogError, row.failure);
    return false;
  };
  return std::all_of(std::begin(subscriptions::kStateMgr), std::end(subscriptions::kStateMgr), subscribed);
}

bool MetadataMgr::SubscribeToRadarHal(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToRadarHal");
  if (!radarHalClient_) radarHalClient_ = std::make_unique<RadarHalClient>(ipc);
  RadarItem item;
  if (!IsSet("NO_RADARHAL") && !Subscribe(*radarHalClient_, subscriptions::kRadar, item, this)) return false;
  ReportRadarEvent(item, false);
  return true;
}

bool MetadataMgr::SubscribeToMicMgr(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToMicMgr");
  if (Ignored("NO_MICMGR", "SubscribeToMicMgr", " - set to ignore MicMgr ")) return true;
  if (!micClient_) micClient_ = std::make_unique<MicClient>(ipc);
  MicStatusResponse status;
  if (!Subscribe(*micClient_, subscriptions::kMicStatus, status, this)) return false;
  ReportMicStatus(status, false);
  return true;
}

bool MetadataMgr::SubscribeToVideoMgr(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToVideoMgr");
  if (Ignored("NO_VIDEOMGR", "SubscribeToVideoMgr", " - set to ignore VideoMgr ")) return true;
  if (!videoMgrClient_) videoMgrClient_ = std::make_unique<VideoMgrClient>(ipc);
  VideoMgrCameraItem cameras;
  VideoMgrStreamQualityItem quality;
  if (!Subscribe(*videoMgrClient_, subscriptions::kCameras, cameras, this) ||
      !Subscribe(*videoMgrClient_, subscriptions::kStreamQuality, quality, this)) {
    return false;
  }
  ReportCameraItem(cameras, false);
  ReportStreamQualityItem(quality, false);
  return true;
}

bool MetadataMgr::SubscribeToAccelHal(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToAccelHal");
  if (Ignored("NO_ACCELHAL", "SubscribeToAccelHal", " - set to ignore AccelHal ")) return true;
  if (!accelHalClient_) accelHalClient_ = std::make_unique<AccelHalClient>(ipc);
  CrashItem item;
  if (!Subscribe(*accelHalClient_, subscriptions::kCrash, item, this)) return false;
  HandleCrash(item.crash, item.tick);
  return true;
}

bool MetadataMgr::SubscribeToTempHal(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToTempHal");
  if (Ignored("NO_TEMPHAL", "SubscribeToTempHal", " - set to ignore TempHal ")) return true;
  if (!tempHalClient_) tempHalClient_ = std::make_unique<TempHalClient>(ipc);
  TempStatus temp;
  if (!Subscribe(*tempHalClient_, subscriptions::kTemperatures, temp, this)) return false;
  ReportTempChange(temp, false);
  return true;
}

// The values at subscription are discarded: live streaming is stored when it changes.
bool MetadataMgr::SubscribeToExternalMgr(LinxIpc& ipc) {
  log(kLogInfo, "SubscribeToExternalMgr");
  if (!externalMgrClient_) {
    const std::string& server = LinxServerNameList::Instance().Name(e_Process_ExternalMgr);
    externalMgrClient_ = std::make_unique<ExternalMgrApi>(ipc, server, kExternalMgrTimeoutMs);
  }
  ExternalMgrApi::StreamingLvsStateItem item;
  for (const SubscriptionRow& row : subscriptions::kLiveStreams) {
    if (!Subscribe(*externalMgrClient_, row, item, this)) return false;
  }
  return true;
}
