#pragma once

#include <memory>
#include <span>

#include "MetadataMgrServer.h"
#include "clients/ExternalMgrApi.h"
#include "clients/ServerClients.h"
#include "clients/StateMgrClient.h"
#include "ipc/LinxIpc.h"
#include "items/Enumerations.h"
#include "sharedmem/MetadataSharedMem.h"
#include "store/DataStoreNormal.h"
#include "system/Servers.h"
#include "system/Systick.h"
#include "system/Watchdog.h"

class DepartmentInfo;
class FpgaExternalEventItem;
class GpsStatusItem;
class MicStatusResponse;
class Officer;
class RadarItem;
class SystemInfo;
class TempStatus;
class VehicleInfo;
class VideoMgrCameraItem;
class VideoMgrStreamQualityItem;
class VideoRecordingSettings;

// The process's one manager object: receives every event of the system and reports it to the store. Its
// operations are grouped by the source file that defines them.
//
// Handlers have the endpoint's signature with the manager as context. A handler logs with mask 2 and drops a
// message whose payload is missing or too short. `tick` is the sender tick, passed on unchanged. `report` is
// true for a change, false for the value at subscription.
class MetadataMgr {
 public:
  // --- Lifecycle.cpp ---

  // Gives the store gMetadataPath. Opens and attaches nothing.
  MetadataMgr();
  // Marks the shared record as ended.
  ~MetadataMgr();
  MetadataMgr(const MetadataMgr&) = delete;
  MetadataMgr& operator=(const MetadataMgr&) = delete;

  // Prepares the metadata directory, shared record, request handlers, store and server. Returns false when
  // one of them fails.
  bool PreInit(LinxIpc& ipc);

  // Writes the first records, once in a run. Does nothing without a system tick; a later call then writes
  // them.
  void InitializeStore();

  // Cleans up and ends the main loop.
  void Shutdown(LinxIpc& ipc);

  // Writes the shutdown record, closes the store, ends the subscriptions and the watchdog.
  void Cleanup();

  // --- Periodic.cpp ---

  void PetWatchdog() { watchdog.PetWatchdog(); }
  Watchdog& GetWatchdog() { return watchdog; }

  // The work of each pass of the main loop. Does nothing after a shutdown.
  void PeriodicProcessing();

  // The store's current tick; 0xFFFFFFFF when it has none.
  unsigned int GetLastSystemTick() { return dataStore.GetCurrentSystemTick(); }

  // --- SimulateData.cpp ---

  // Simulates the vehicle's events since the last call and reports them; in radar-only mode only radar
  // events.
  void SimulateData();

  // --- Subscriptions.cpp ---

  // Subscribes to all servers in their fixed order and reports their values; then subscribes to the watchdog
  // and writes the full state. Initialises the store after the first server. Ignores `flag`, which the state
  // manager sends. Stops and returns false at the first failure; earlier subscriptions stay.
  bool SubscribeToServers(LinxIpc& ipc, bool flag);

  // Each is defined beside the events of its server. It creates its client if needed and subscribes to the
  // server's items. Returns true also when an environment variable switches the server off. The FPGA, GPS and
  // radar then still create their client and report the item as constructed, so that the store has a first
  // value.
  bool SubscribeToConfigMgr(LinxIpc& ipc);
  bool SubscribeToFpga(LinxIpc& ipc);
  bool SubscribeToGpsHal(LinxIpc& ipc);
  bool SubscribeToStateMgr(LinxIpc& ipc);
  bool SubscribeToRadarHal(LinxIpc& ipc);
  bool SubscribeToMicMgr(LinxIpc& ipc);
  bool SubscribeToVideoMgr(LinxIpc& ipc);
  bool SubscribeToAccelHal(LinxIpc& ipc);
  bool SubscribeToTempHal(LinxIpc& ipc);
  bool SubscribeToExternalMgr(LinxIpc& ipc);

  // --- Restarts.cpp ---

  // Only logs: the last values of the dead process stay valid.
  void ProcessDied(LinxIpc& ipc, e_Process process);
  // Renews the subscriptions with that process. Its next notices update the store.
  void ProcessRestarted(LinxIpc& ipc, e_Process process);

  // --- RecordingEvents.cpp ---

  void ReportRecordingEvent(bool recordStart, unsigned int tick, bool report);
  void ReportCovertModeEvent(bool enabled, unsigned int tick, bool report);
  // Reports to the store first, then to the subscribers of the bookmark item.
  void ReportBookmark(unsigned int tick);

  // Notices of the state manager: a SystickItem. RecordStartHandler ignores tick 0.
  static void RecordStartHandler(LinxIpc* ipc, void* context);
  static void RecordStopHandler(LinxIpc* ipc, void* context);
  static void EnterCovertModeHandler(LinxIpc* ipc, void* context);
  static void ExitCovertModeHandler(LinxIpc* ipc, void* context);

  // Messages to this process: 32-bit tick; RecordStartStop also has a byte, 0 for a stop.
  static void RecordStartStopHandler(LinxIpc* ipc, void* context);
  static void BookmarkHandler(LinxIpc* ipc, void* context);

  // --- InputEvents.cpp ---

  // Reports the state of each input that is marked as changed, in a fixed order.
  void ReportExternalEvent(const FpgaExternalEventItem& item, bool report);

  static void ExternalInputEventHandler(LinxIpc* ipc, void* context);

  // --- GpsRadarEvents.cpp ---

  // Both also copy the reading into the shared record, valid or not.
  void ReportGpsStatus(const GpsStatusItem& item, bool report);
  void ReportRadarEvent(const RadarItem& item, bool report);

  static void GpsStatusEventHandler(LinxIpc* ipc, void* context);
  static void RadarEventHandler(LinxIpc* ipc, void* context);

  // --- SensorEvents.cpp ---

  // Does not check `mic`; MicStateChangedHandler does.
  void ReportMicState(e_MicrophonePosition mic, bool present, bool active, unsigned int tick, bool report);
  void ReportMicStatus(const MicStatusResponse& status, bool report);
  void ReportTempChange(const TempStatus& temp, bool report);
  // Always reports a change.
  void HandleCrash(bool crash, unsigned int tick);

  // A message to this process: 32-bit tick and number, one byte each for present and active. Logs with mask 1
  // and drops a number above 3.
  static void MicStateChangedHandler(LinxIpc* ipc, void* context);
  static void MicMgrStatusHandler(LinxIpc* ipc, void* context);
  static void TempChangeHandler(LinxIpc* ipc, void* context);
  static void CrashDetectHandler(LinxIpc* ipc, void* context);

  // --- VideoEvents.cpp ---

  // Both log with mask 1 and drop a number above 3.
  void ReportVideoStreamState(unsigned int stream, e_StreamState state, unsigned int tick, bool report);
  void ReportCameraState(unsigned int camera, e_CameraState state, unsigned int tick, bool report);
  // Reports ports 0 to 3; port 3 combines several entries.
  void ReportCameraItem(VideoMgrCameraItem& item, bool report);
  void ReportStreamQualityItem(VideoMgrStreamQualityItem& item, bool report);

  // Messages to this process: 32-bit tick, number and state.
  static void VideoStreamStateChangeHandler(LinxIpc* ipc, void* context);
  static void CliCameraStateChangedHandler(LinxIpc* ipc, void* context);
  static void VideoMgrCameraItemHandler(LinxIpc* ipc, void* context);
  static void VideoMgrStreamQualityItemHandler(LinxIpc* ipc, void* context);

  // --- LiveStreaming.cpp ---

  void ReportLVSStateChange(const ExternalMgrApi::StreamingLvsStateItem& item, bool report, int stream,
                            unsigned int tick);

  // One handler for each stream, 0 to 5; all call the first.
  static void LVSStateChangeHandler(LinxIpc* ipc, void* context, int stream);
  static void LVSStateChangeHandler_0(LinxIpc* ipc, void* context) { LVSStateChangeHandler(ipc, context, 0); }
  static void LVSStateChangeHandler_1(LinxIpc* ipc, void* context) { LVSStateChangeHandler(ipc, context, 1); }
  static void LVSStateChangeHandler_2(LinxIpc* ipc, void* context) { LVSStateChangeHandler(ipc, context, 2); }
  static void LVSStateChangeHandler_3(LinxIpc* ipc, void* context) { LVSStateChangeHandler(ipc, context, 3); }
  static void LVSStateChangeHandler_4(LinxIpc* ipc, void* context) { LVSStateChangeHandler(ipc, context, 4); }
  static void LVSStateChangeHandler_5(LinxIpc* ipc, void* context) { LVSStateChangeHandler(ipc, context, 5); }

  // --- Configuration.cpp ---

  void VehicleChanged(const VehicleInfo& vehicle);
  void OfficerChanged(const Officer& officer);
  void DepartmentInfoChanged(const DepartmentInfo& department);
  void SystemInfoChanged(const SystemInfo& system);
  void VideoRecordingSettingsChanged(const VideoRecordingSettings& settings);

  static void VehicleInfoChangedHandler(LinxIpc* ipc, void* context);
  static void OfficerChangedHandler(LinxIpc* ipc, void* context);
  static void DeptInfoChangedHandler(LinxIpc* ipc, void* context);
  static void SystemInfoChangedHandler(LinxIpc* ipc, void* context);
  static void VideoRecordingSettingsChangedHandler(LinxIpc* ipc, void* context);

  // --- Requests.cpp ---

  // Request: file name in 1024 bytes, with NUL; 32-bit first and last tick. Answer: one byte, 1 when the copy
  // was made.
  static void MetadataToFileHandler(LinxIpc* ipc, void* context);
  // Request: no payload. Answer: the tick, a byte that is 1 when the tick is valid, three zero bytes.
  static void GetLastSystemTickHandler(LinxIpc* ipc, void* context);

 private:
  struct FollowedServer;

  // In the order of the subscriptions.
  static std::span<const FollowedServer> FollowedServers();
  template <auto kMember>
  static SubscribeClient* Client(const MetadataMgr& manager) {
    return (manager.*kMember).get();
  }

  void RegisterHandlers(LinxIpc& ipc);
  bool SubscribeTo(const FollowedServer& followed, LinxIpc& ipc);

  // These names are the system's, without a trailing underscore. The first subscription creates its client.
  Watchdog watchdog;
  DataStoreNormal dataStore;
  Systick systick;
  std::unique_ptr<ConfigClient> configClient;
  std::unique_ptr<FpgaClient> fpgaClient;
  std::unique_ptr<GpsHalClient> gpsHalClient;
  std::unique_ptr<StateMgrClient> stateMgrClient;
  std::unique_ptr<MetadataMgrServer> server;
  std::unique_ptr<RadarHalClient> radarHalClient;
  std::unique_ptr<MicClient> micClient;
  std::unique_ptr<VideoMgrClient> videoMgrClient;
  std::unique_ptr<AccelHalClient> accelHalClient;
  std::unique_ptr<TempHalClient> tempHalClient;
  std::unique_ptr<ExternalMgrApi> externalMgrClient;
  bool forceMetadata = false;
  MetadataSharedMem sharedMem;
};
