#include "clients/MetadataMgrClient.h"

#include <cerrno>
#include <cstring>

#include "SubscribeProtocol.h"
#include "ipc/LinxServerNameList.h"
#include "ipc/PeerQueue.h"
#include "system/BigEndian.h"
#include "system/Messages.h"
#include "system/Servers.h"

namespace {

constexpr unsigned int kWord = 4;
constexpr unsigned int kTickAndFlag = 8;
constexpr unsigned int kPathField = 1024;

const std::string& Name() {
  return LinxServerNameList::Instance().Name(e_Process_MetadataMgr);
}

}  // namespace

int MetadataMgrClient::Ask(IpcMessage& message, unsigned int answerType, unsigned int answerSize) {
  if (const int error = ipc::NotifyServer(ipc_, Name(), message, true); error != 0) return error;
  const ipc::subscribe::Asked asked{Name(), ipc::ServerConnection(ipc_, Name())};
  const os::Errno result = ipc::subscribe::AwaitAnswer(ipc_, timeoutMs_, answerType, asked, message);
  return !result.Failed() && message.Size() < answerSize ? EPROTO : result.Value();
}

int MetadataMgrClient::Ping() {
  IpcMessage message;
  (void)message.Allocate(MetadataMgrMsg_Ping, 0, nullptr);
  return Ask(message, MetadataMgrMsg_PingResponse, 0);
}

int MetadataMgrClient::LastSystemTick(unsigned int& tick) {
  IpcMessage message;
  (void)message.Allocate(MetadataMgrMsg_GetLastSystemTick, 0, nullptr);
  const int result = Ask(message, MetadataMgrMsg_GetLastSystemTickResponse, kTickAndFlag);
  if (result == 0) tick = GetU32(message.DataPtr());
  return result;
}

int MetadataMgrClient::LogLevel(unsigned int& mask) {
  IpcMessage message;
  (void)message.Allocate(LogLevelMsg_Get, kWord, nullptr);
  const int result = Ask(message, LogLevelMsg_Response, kWord);
  if (result == 0) mask = GetU32(message.DataPtr());
  return result;
}

int MetadataMgrClient::SetLogLevel(unsigned int& mask) {
  IpcMessage message;
  (void)message.Allocate(LogLevelMsg_Set, kWord, nullptr);
  PutU32(message.DataPtr(), mask);
  const int result = Ask(message, LogLevelMsg_Response, kWord);
  if (result == 0) mask = GetU32(message.DataPtr());
  return result;
}

int MetadataMgrClient::CopyToFile(const std::string& path, unsigned int first, unsigned int last,
                                  bool& copied) {
  if (path.empty() || path.size() >= kPathField) return EINVAL;
  IpcMessage message;
  (void)message.Allocate(MetadataMgrMsg_MetadataToFile, kPathField + 2 * kWord, nullptr);
  std::memcpy(message.DataPtr(), path.data(), path.size());
  PutU32(message.DataPtr() + kPathField, first);
  PutU32(message.DataPtr() + kPathField + kWord, last);
  const int result = Ask(message, MetadataMgrMsg_MetadataToFileResponse, 1);
  if (result == 0) copied = message.DataPtr()[0] == 1;
  return result;
}

int MetadataMgrClient::Quit() {
  IpcMessage message;
  (void)message.Allocate(LinxIpc::kShutdownNotice, 0, nullptr);
  // No answer has this type: the wait ends when the connection closes. If the process refused the connection,
  // it still runs.
  const int result = Ask(message, LinxIpc::kShutdownNotice, 0);
  return result == ENOTCONN && IsGone() ? 0 : result;
}

// A process that exits closes its connections slightly before its socket.
bool MetadataMgrClient::IsGone() {
  constexpr int kTries = 50;
  for (int i = 0; i < kTries; ++i) {
    IpcMessage ping;
    (void)ping.Allocate(MetadataMgrMsg_Ping, 0, nullptr);
    const int error = ipc::NotifyServer(ipc_, Name(), ping, false);
    if (error == ENOENT || error == ECONNREFUSED) return true;
    (void)ipc_.Receive(10, MetadataMgrMsg_PingResponse, Name(), &ping);
  }
  return false;
}
