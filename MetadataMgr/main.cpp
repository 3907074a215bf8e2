#include <exception>

#include "CommandLine.h"
#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "Misc/ProcessInitializer.h"
#include "ProcessState.h"
#include "system/KorvaneTerminateHandler.h"
#include "system/KvGetenv.h"

namespace {

constexpr int kReceiveTimeoutMs = 1000;  // longest wait before the periodic work

void BuildMetadataPaths() {
  const char* root = KvGetenvText("METADATA_ROOT");  // a development machine has no /mnt/hd
  gMetadataDir = root != nullptr ? root : "/mnt/hd";
  gMetadataDir += "/";
  gMetadataDir += "metadata";
  gMetadataPath = gMetadataDir;
  gMetadataPath += "/metadata";
}

// A failed or timed-out receive only ends the wait.
void RunLoop(MetadataMgr& manager, LinxIpc& ipc) {
  while (!gShutdownRequested) {
    (void)ipc.Receive(kReceiveTimeoutMs, 0, LinxIpc::emptyString, nullptr);
    manager.PetWatchdog();
    manager.PeriodicProcessing();
  }
}

}  // namespace

int main(int argc, char** argv) {
  unsigned int logLevel = LogClient::Instance().Level();
  BuildMetadataPaths();
  if (!ParseCommandLine(argc, argv, logLevel)) return 1;

  MetadataMgr manager;
  ProcessInitializer<MetadataMgr> initializer(manager, e_Process_MetadataMgr);
  std::set_terminate(KorvaneTerminateHandler);
  gStateMgrName = LinxServerNameList::Instance().Name(e_Process_StateMgr);

  int status = 0;
  if (initializer.Init("MetadataMgr", logLevel)) {
    RunLoop(manager, initializer.Ipc());
  } else {
    kManagerLog(kLogError, "Unable to initialize MetadataMgr");
    status = 1;
  }
  kManagerLog(kLogInfo, "Exiting ", status);
  return status;
}
