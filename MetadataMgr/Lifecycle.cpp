#include <sys/stat.h>

#include <cerrno>
#include <initializer_list>
#include <string>
#include <vector>

#include "ControlRequests.h"
#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "ProcessState.h"
#include "SharedRecord.h"
#include "system/KvGetenv.h"
#include "system/Messages.h"
#include "system/MfgItem.h"
#include "system/SystemInformation.h"
#include "system/VersionApi.h"

namespace {

constexpr const LogSource& log = kManagerLog;
constexpr mode_t kDirectoryMode = 0770;

// Whatever stands at the path is accepted; the store finds out whether it is of use.
bool MakeMetadataDir() {
  struct stat status {};
  if (stat(gMetadataDir.c_str(), &status) == 0 || mkdir(gMetadataDir.c_str(), kDirectoryMode) == 0)
    return true;
  log(kLogError, "Error Creating directory", errno);
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

MetadataMgr::MetadataMgr() : watchdog_(e_Process_MetadataMgr, e_ThreadIds_Main), dataStore_(gMetadataPath) {
  if (KvGetenv("FORCE_METADATA") == nullptr) return;
  log(kLogUnusual, "Forcing fake periodic metadata");
  forceMetadata_ = true;
}

MetadataMgr::~MetadataMgr() {
  sharedrecord::MarkEnded(sharedMem_.MetadataItems(true));
}

bool MetadataMgr::PreInit(LinxIpc& ipc) {
  log(kLogTrace, "PreInit");
  if (!MakeMetadataDir()) return false;
  unsigned char* items = sharedMem_.MetadataItems(false);
  if (items == nullptr) {
    log(kLogError, "Shared Memory attachment failure");
    return false;
  }
  log(kLogInfo, "Connected to shared Memory");
  sharedrecord::Reset(items);
  RegisterHandlers(ipc);
  if (!dataStore_.Open()) return false;
  server_ = std::make_unique<MetadataMgrServer>(ipc);
  return true;
}

void MetadataMgr::RegisterHandlers(LinxIpc& ipc) {
  ipc.RegisterHandler(MetadataMgrMsg_Ping, PingHandler, nullptr);
  ipc.RegisterHandler(MetadataMgrMsg_MetadataToFile, MetadataToFileHandler, this);
  ipc.RegisterHandler(MetadataMgrMsg_GetLastSystemTick, GetLastSystemTickHandler, this);
  ipc.RegisterHandler(MetadataMgrMsg_VideoStreamState, VideoStreamStateChangeHandler, this);
  ipc.RegisterHandler(MetadataMgrMsg_CameraState, CliCameraStateChangedHandler, this);
  ipc.RegisterHandler(MetadataMgrMsg_MicState, MicStateChangedHandler, this);
  ipc.RegisterHandler(MetadataMgrMsg_RecordStartStop, RecordStartStopHandler, this);
  ipc.RegisterHandler(MetadataMgrMsg_Bookmark, BookmarkHandler, this);
}

void MetadataMgr::InitializeStore() {
  if (gStoreInitialized) return;
  const unsigned int tick = systick_.SystemTick();
  if (tick == Systick::kUnavailable) {
    log(kLogMalformed, "SystemTick not correct in InitializeStore");
    return;
  }
  log(kLogTrace, "Starting first output to metadata files at system tick ", tick);
  dataStore_.ReportShutdownDataAtStartup();
  dataStore_.TimerTick(tick);
  ReportDeviceFacts(dataStore_);
  dataStore_.ReportConfiguration(false);
  gStoreInitialized = true;
  log(kLogTrace, "finished first output to metadata files");
}

void MetadataMgr::Shutdown(LinxIpc& /*ipc*/) {
  log(kLogTrace, "Shutdown Requested");
  Cleanup();
  gShutdownRequested = true;
}

void MetadataMgr::Cleanup() {
  dataStore_.ReportShutdownData();
  dataStore_.Close();
  // Not the order of the members; the state manager is released last.
  const std::initializer_list<SubscribeClient*> clients = {
      configClient_.get(),      fpgaClient_.get(),    gpsHalClient_.get(),   radarHalClient_.get(),
      videoMgrClient_.get(),    tempHalClient_.get(), accelHalClient_.get(), micClient_.get(),
      externalMgrClient_.get(), stateMgrClient_.get()};
  for (SubscribeClient* client : clients) {
    if (client != nullptr) client->UnsubscribeAll(false);
  }
  watchdog_.Unsubscribe();
}
