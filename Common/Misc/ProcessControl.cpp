#include "Misc/ProcessControl.h"

#include <string>

#include "Misc/MiscLog.h"
#include "Misc/StateMgrNotices.h"
#include "system/BigEndian.h"

namespace {

constexpr const LogSource& log = kInitializerLog;

constexpr unsigned int kMaskSize = 4;

// Checks the payload size for handlers that read fixed fields; logs a payload that is too short.
bool HasBytes(const IpcMessage& message, unsigned int needed, const char* who) {
  if (message.Size() >= needed) return true;
  log(kLogMalformed, who, ": payload is too short");
  return false;
}

}  // namespace

bool ProcessControl::NotifyStateMgr(LinxIpc& ipc, IpcMessage& message) {
  log(kLogInfo, "Notify to ", gStateMgrName);
  if (ipc.Notify(gStateMgrName, message, true) == 0) return true;
  log(kLogError, "Error sending notify to ", gStateMgrName);
  return false;
}

void ProcessControl::HandleLogLevel(LinxIpc* ipc, void* /*context*/) {
  log(kLogInfo, "HandleLogLevel");
  IpcMessage& message = ipc->CurrentMessage();
  if (message.DataPtr() == nullptr) {
    log(kLogMalformed, "HandleLogLevel: error, DataPtr is null");
    return;
  }
  const bool sets = message.MsgType() == LogLevelMsg_Set;
  if (sets && !HasBytes(message, kMaskSize, "HandleLogLevel")) return;
  const std::string sender = message.GetSender();
  if (sets) {
    const unsigned int level = GetU32(message.DataPtr());
    log(kLogTrace, "HandleLogLevel: set mask ", LogHex{level});
    LogClient::Instance().Level(level);
  }
  char level[kMaskSize];
  PutU32(reinterpret_cast<unsigned char*>(level), LogClient::Instance().Level());
  if (message.Allocate(LogLevelMsg_Response, kMaskSize, level) != 0) {
    log(kLogError, "handleLogLevel: Cannot allocate response");
    return;
  }
  if (ipc->Notify(sender, message, true) != 0) log(kLogMalformed, "handleLogLevel: Failed to send response");
}

void ProcessControl::IgnoreHandler(LinxIpc* /*ipc*/, void* /*context*/) {
  log(kLogInfo, "IgnoreHandler");
}

void ProcessControl::RespondToShutdown(LinxIpc& ipc) {
  if (RunsWithoutStateMgr()) return;
  IpcMessage response;
  if (response.Allocate(StateMgrProcessMsg_ShutdownResponse, 0, nullptr) != 0) {
    log(kLogError, "ProcessInitializer::RespondToShutdown - Error allocating request");
    return;
  }
  (void)NotifyStateMgr(ipc, response);
}

bool ProcessControl::ReadNoticeProcess(LinxIpc& ipc, e_Process& process) {
  const IpcMessage& message = ipc.CurrentMessage();
  if (message.DataPtr() == nullptr) {
    log(kLogMalformed, "NULL MESSAGE");
    return false;
  }
  if (!HasBytes(message, ProcessPayload::kSize, "Process notice")) return false;
  process = ProcessPayload::Read(message.DataPtr());
  return true;
}
