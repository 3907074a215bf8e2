#pragma once

#include <memory>

#include "MetadataMgrServer.h"
#include "ipc/LinxIpc.h"
#include "items/Enumerations.h"
#include "sharedmem/MetadataSharedMem.h"
#include "store/DataStoreNormal.h"
#include "system/Process.h"
#include "system/Systick.h"
#include "system/Watchdog.h"

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

  // Makes ready what needs the endpoint: metadata directory, shared record, request handlers,
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

  void PetWatchdog() { watchdog_.PetWatchdog(); }
  Watchdog& GetWatchdog() { return watchdog_; }

  // The work of each pass of the main loop; nothing after a shutdown.
  void PeriodicProcessing();

  // The tick that the store holds as current; 0xFFFFFFFF when it has none.
  unsigned int GetLastSystemTick() { return dataStore_.GetCurrentSystemTick(); }

  // --- Subscriptions.cpp ---

  // Initialises the store, registers with the watchdog and writes the full state. `flag` is the
  // state manager's and has no influence. False when the watchdog refuses.
  bool SubscribeToServers(LinxIpc& ipc, bool flag);

  // --- Restarts.cpp ---

  void ProcessDied(LinxIpc& ipc, e_Process process);
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

  // --- MediaEvents.cpp: messages to this process ---

  // A number above 3 is logged with mask 1 and dropped.
  void ReportVideoStreamState(unsigned int stream, e_StreamState state, unsigned int tick, bool report);
  void ReportCameraState(unsigned int camera, e_CameraState state, unsigned int tick, bool report);
  // Not checked; the handler is.
  void ReportMicState(e_MicrophonePosition mic, bool present, bool active, unsigned int tick, bool report);

  // 32-bit tick, number and state.
  static void VideoStreamStateChangeHandler(LinxIpc* ipc, void* context);
  static void CliCameraStateChangedHandler(LinxIpc* ipc, void* context);
  // 32-bit tick and number, a byte each for present and active.
  static void MicStateChangedHandler(LinxIpc* ipc, void* context);

  // --- Requests.cpp ---

  // 1024 bytes of NUL-terminated file name, 32-bit first and last: answered with one byte, 1 when
  // the copy was made.
  static void MetadataToFileHandler(LinxIpc* ipc, void* context);
  // No payload: answered with the tick, a byte that is 1 when it is valid, three zero bytes.
  static void GetLastSystemTickHandler(LinxIpc* ipc, void* context);

 private:
  void RegisterHandlers(LinxIpc& ipc);

  // Destroyed in reverse order.
  Watchdog watchdog_;
  DataStoreNormal dataStore_;
  Systick systick_;
  std::unique_ptr<MetadataMgrServer> server_;
  bool forceMetadata_ = false;
  MetadataSharedMem sharedMem_;
};
