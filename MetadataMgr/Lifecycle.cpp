#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string>
#include <vector>

#include "ControlRequests.h"
#include "FollowedServers.h"
#include "ManagerLog.h"
#include "ProcessState.h"
#include "SharedRecord.h"
#include "system/KvGetenv.h"
#include "system/Messages.h"
#include "system/MfgItem.h"
#include "system/SystemInformation.h"
#include "system/VersionApi.h"

namespace {

constexpr mode_t kDirectoryMode = 0770;

// Accepts any existing file at the path; opening the store fails if it is not a usable directory.
bool MakeMetadataDir() {
  struct stat status {};
  if (stat(gMetadataDir.c_str(), &status) == 0 || mkdir(gMetadataDir.c_str(), kDirectoryMode) == 0)
    return true;
  kManagerLog(kLogError, "Error Creating directory", errno);
  return false;
}

void ReportDeviceFacts(DataStore& store) {
  unsigned char mac[6] = {};
  SystemInformation::GetShortMacAddress(mac);
  store.ReportMac(mac, false);
  store.ReportStateData(e_Tag_Started, true, 0);

  std::string serial;
  if (!MfgItem::GetSystemSerialNumber(serial)) serial.clear();
  store.ReportSystemSerialNum(serial);

  std::vector<VersionEntry> versions;
  VersionApi::GetAllVersions(versions, VersionApi::versionFile);
  for (const VersionEntry& version : versions) {
    if (version.name().find("BUILD") != std::string::npos) {
      store.ReportVersion(e_COMPONENT_Build, version.asString_sw());
    }
  }
}

}  // namespace

MetadataMgr::MetadataMgr() : watchdog(e_Process_MetadataMgr, e_ThreadIds_Main), dataStore(gMetadataPath) {
  if (KvGetenv("FORCE_METADATA") == nullptr) return;
  kManagerLog(kLogUnusual, "Forcing fake periodic metadata");
  forceMetadata = true;
}

MetadataMgr::~MetadataMgr() {
  sharedrecord::MarkEnded(sharedMem.MetadataItems(true));
}

bool MetadataMgr::PreInit(LinxIpc& ipc) {
  kManagerLog(kLogTrace, "PreInit");
  if (!MakeMetadataDir()) return false;
  unsigned char* items = sharedMem.MetadataItems(false);
  if (items == nullptr) {
    kManagerLog(kLogError, "Shared Memory attachment failure");
    return false;
  }
  kManagerLog(kLogInfo, "Connected to shared Memory");
  sharedrecord::Reset(items);
  RegisterHandlers(ipc);
  if (!dataStore.Open()) return false;
  server = std::make_unique<MetadataMgrServer>(ipc);
  return true;
}

void MetadataMgr::RegisterHandlers(LinxIpc& ipc) {
  static constexpr struct {
    unsigned int type;
    LinxIpc::Handler handler;
  } kRows[] = {
      {MetadataMgrMsg_Ping, PingHandler},
      {MetadataMgrMsg_MetadataToFile, MetadataToFileHandler},
      {MetadataMgrMsg_GetLastSystemTick, GetLastSystemTickHandler},
      {MetadataMgrMsg_VideoStreamState, VideoStreamStateChangeHandler},
      {MetadataMgrMsg_CameraState, CliCameraStateChangedHandler},
      {MetadataMgrMsg_MicState, MicStateChangedHandler},
      {MetadataMgrMsg_RecordStartStop, RecordStartStopHandler},
      {MetadataMgrMsg_Bookmark, BookmarkHandler},
  };
  static_assert(std::none_of(std::begin(kRows), std::end(kRows),
                             [](const auto& row) { return servers::CountOf(row.type) != 0; }),
                "no message is also a notice");
  for (const auto& row : kRows) {
    ipc.RegisterHandler(row.type, row.handler, row.handler == PingHandler ? nullptr : this);
  }
}

void MetadataMgr::InitializeStore() {
  if (gStoreInitialized) return;
  const unsigned int tick = systick.SystemTick();
  if (tick == Systick::kUnavailable) {
    kManagerLog(kLogMalformed, "SystemTick not correct in InitializeStore");
    return;
  }
  kManagerLog(kLogTrace, "Starting first output to metadata files at system tick ", tick);
  dataStore.ReportShutdownDataAtStartup();
  dataStore.TimerTick(tick);
  ReportDeviceFacts(dataStore);
  dataStore.ReportConfiguration(false);
  gStoreInitialized = true;
  kManagerLog(kLogTrace, "finished first output to metadata files");
}

void MetadataMgr::Shutdown(LinxIpc& /*ipc*/) {
  kManagerLog(kLogTrace, "Shutdown Requested");
  Cleanup();
  gShutdownRequested = true;
}

void MetadataMgr::Cleanup() {
  dataStore.ReportShutdownData();
  dataStore.Close();
  for (unsigned int place = 1; place <= FollowedServers().size(); ++place) {
    for (const FollowedServer& followed : FollowedServers()) {
      SubscribeClient* client = followed.cleanUpPlace == place ? followed.client(*this) : nullptr;
      if (client != nullptr) client->UnsubscribeAll(false);
    }
  }
  watchdog.Unsubscribe();
}
