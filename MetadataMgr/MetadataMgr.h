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
#include "system/Process.h"
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

// The process's one manager object: takes every event of the system that reaches the endpoint and
// hands it to the metadata store. Its operations are grouped by the source that defines them.
//
// Handlers have the endpoint's signature with the manager as context. A message without the
// payload that its handler needs is logged with mask 2 and dropped. Ticks are the senders', passed
// on unchanged. `report` is true for a change as it happened and false for the value that a server
// had when it was subscribed to.
class MetadataMgr {
 public:
  // --- Lifecycle.cpp ---

  // Builds the members; the store gets gMetadataPath. Attaches nothing.
  MetadataMgr();
  // Marks the shared record as no longer kept.
  ~MetadataMgr();
  MetadataMgr(const MetadataMgr&) = delete;
  MetadataMgr& operator=(const MetadataMgr&) = delete;

  // Prepares everything that needs the endpoint: metadata directory, shared record, request handlers,
  // store, server. False when one of them cannot be had.
  bool PreInit(LinxIpc& ipc);

  // Makes the first output to the metadata files, once in a run; waits for a later call while
  // there is no system tick.
  void InitializeStore();

  // Ends the recording and lets the main loop end.
  void Shutdown(LinxIpc& ipc);

  // Closes the store with its shutdown record, ends the subscriptions and the watchdog.
  void Cleanup();

  // --- Periodic.cpp ---

  void PetWatchdog() { watchdog.PetWatchdog(); }
  Watchdog& GetWatchdog() { return watchdog; }

  // The work of each pass of the main loop; nothing after a shutdown.
  void PeriodicProcessing();

  // The tick that the store holds as current; 0xFFFFFFFF when it has none.
  unsigned int GetLastSystemTick() { return dataStore.GetCurrentSystemTick(); }

  // --- SimulateData.cpp ---

  // Invents the vehicle's events since the last call and reports them; in radar-only mode only those
  // of the radar.
  void SimulateData();

  // --- Subscriptions.cpp ---

  // Subscribes to all servers, in their fixed order, and reports the value that each gives; then
  // registers with the watchdog and writes the full state. Initialises the store after the first
  // server. `flag` is the state manager's and has no influence. False at the first server that
  // refuses; those before it stay subscribed.
  bool SubscribeToServers(LinxIpc& ipc, bool flag);

  // Each stands in the source of its events. It makes its client, where there is none yet, and
  // subscribes to the server's items. True also when the server is switched off by its environment
  // variable. The FPGA, GPS and radar keep their client then, and report the item as it was
  // constructed, so that the store has a value to begin with.
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

  // A death needs no action: the last values that the process delivered stay as they are.
  void ProcessDied(LinxIpc& ipc, e_Process process);
  // Renews the subscriptions with that process. Its next notices bring the store up to date.
  void ProcessRestarted(LinxIpc& ipc, e_Process process);

  // --- RecordingEvents.cpp ---

  void ReportRecordingEvent(bool recordStart, unsigned int tick, bool report);
  void ReportCovertModeEvent(bool enabled, unsigned int tick, bool report);
  // To the store first, then to the subscribers of the bookmark item.
  void ReportBookmark(unsigned int tick);

  // Notices of the state manager: a SystickItem. A record start with tick 0 is ignored.
  static void RecordStartHandler(LinxIpc* ipc, void* context);
  static void RecordStopHandler(LinxIpc* ipc, void* context);
  static void EnterCovertModeHandler(LinxIpc* ipc, void* context);
  static void ExitCovertModeHandler(LinxIpc* ipc, void* context);

  // Messages to this process: 32-bit tick, and for the first a byte that is 0 for a stop.
  static void RecordStartStopHandler(LinxIpc* ipc, void* context);
  static void BookmarkHandler(LinxIpc* ipc, void* context);

  // --- InputEvents.cpp ---

  // One state for each input that is marked as changed, in a fixed order.
  void ReportExternalEvent(const FpgaExternalEventItem& item, bool report);

  static void ExternalInputEventHandler(LinxIpc* ipc, void* context);

  // --- GpsRadarEvents.cpp ---

  // Each also copies the reading into the shared record, valid or not.
  void ReportGpsStatus(const GpsStatusItem& item, bool report);
  void ReportRadarEvent(const RadarItem& item, bool report);

  static void GpsStatusEventHandler(LinxIpc* ipc, void* context);
  static void RadarEventHandler(LinxIpc* ipc, void* context);

  // --- SensorEvents.cpp ---

  // Not checked; the handler of the message is.
  void ReportMicState(e_MicrophonePosition mic, bool present, bool active, unsigned int tick, bool report);
  void ReportMicStatus(const MicStatusResponse& status, bool report);
  void ReportTempChange(const TempStatus& temp, bool report);
  // Always reported as a change.
  void HandleCrash(bool crash, unsigned int tick);

  // A message to this process: 32-bit tick and number, a byte each for present and active. A
  // number above 3 is logged with mask 1 and dropped.
  static void MicStateChangedHandler(LinxIpc* ipc, void* context);
  static void MicMgrStatusHandler(LinxIpc* ipc, void* context);
  static void TempChangeHandler(LinxIpc* ipc, void* context);
  static void CrashDetectHandler(LinxIpc* ipc, void* context);

  // --- VideoEvents.cpp ---

  // A number above 3 is logged with mask 1 and dropped.
  void ReportVideoStreamState(unsigned int stream, e_StreamState state, unsigned int tick, bool report);
  void ReportCameraState(unsigned int camera, e_CameraState state, unsigned int tick, bool report);
  // Ports 0 to 3; port 3 stands for several entries.
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

  // One for each stream, 0 to 5; all lead to the shared one.
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

  // 1024 bytes of NUL-terminated file name, 32-bit first and last: answered with one byte, 1 when
  // the copy was made.
  static void MetadataToFileHandler(LinxIpc* ipc, void* context);
  // No payload: answered with the tick, a byte that is 1 when it is valid, three zero bytes.
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

  // Named as the system names them, without a trailing underscore. Destroyed in reverse order. Clients
  // are made at their first subscription.
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
