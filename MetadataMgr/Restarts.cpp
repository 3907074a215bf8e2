#include "ManagerLog.h"
#include "MetadataMgr.h"

namespace {

constexpr const LogSource& log = kManagerLog;

}  // namespace

// The last values that a dead process delivered stay as they are.
void MetadataMgr::ProcessDied(LinxIpc& /*ipc*/, e_Process process) {
  log(kLogTrace, "Process Died ", unsigned{process});
}

void MetadataMgr::ProcessRestarted(LinxIpc& /*ipc*/, e_Process process) {
  log(kLogTrace, "Process Restarted ", unsigned{process});
}
