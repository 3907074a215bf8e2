#include "Misc/StateMgrNotices.h"

#include "Misc/MiscLog.h"
#include "system/BigEndian.h"
#include "system/KvGetenv.h"

namespace {

constexpr const LogSource& log = kInitializerLog;

}  // namespace

bool RunsWithoutStateMgr() {
  return KvGetenv("RUN_WITHOUT_STATEMGR") != nullptr;
}

bool NotifyStateMgr(LinxIpc& ipc, IpcMessage& message) {
  log(kLogInfo, "Notify to ", gStateMgrName);
  if (ipc.Notify(gStateMgrName, message, true) == 0) return true;
  log(kLogError, "Error sending notify to ", gStateMgrName);
  return false;
}

ProcessPayload::ProcessPayload(e_Process process) {
  PutU32(reinterpret_cast<unsigned char*>(bytes_), process);
}

e_Process ProcessPayload::Read(const unsigned char* payload) {
  return static_cast<e_Process>(GetU32(payload));
}
