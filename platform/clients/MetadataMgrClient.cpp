#include "clients/MetadataMgrClient.h"

#include <cerrno>
#include <cstring>

#include "SubscribeProtocol.h"
#include "ipc/LinxServerNameList.h"
#include "ipc/PeerQueue.h"
#include "system/BigEndian.h"
#include "system/Messages.h"
#include "system/Process.h"

namespace {

constexpr unsigned int kWord = 4;
constexpr unsigned int kTickAndFlag = 8;
constexpr unsigned int kPathField = 1024;

const std::string& Name() {
  return LinxServerNameList::Instance().Name(e_Process_MetadataMgr);
}

}  // namespace

int MetadataMgrClient::Ask(IpcMessage& message, unsigned int answerType, unsigned int answerSize) {
  if (const int error = ipc_.Notify(Name(), message, true); error != 0) return error;
  const subscribe::Asked asked{Name(), PeerConnection(ipc_, Name())};
  const int result = subscribe::AwaitAnswer(ipc_, timeoutMs_, answerType, asked, message);
  return result == 0 && message.Size() < answerSize ? EPROTO : result;
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
  // Nobody answers with this type: the wait ends with the connection.
  const int result = Ask(message, LinxIpc::kShutdownNotice, 0);
  return result == ENOTCONN ? 0 : result;
}
