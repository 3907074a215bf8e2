#include "clients/StreamMgrApi.h"

#include "SubscribeProtocol.h"
#include "ipc/LinxServerNameList.h"
#include "ipc/PeerQueue.h"
#include "items/StringItem.h"
#include "system/Messages.h"
#include "system/Servers.h"

std::string StreamMgrApi::CurrentlyRecordingREID(LinxIpc& ipc, int timeoutMs) {
  const std::string& streamMgr = LinxServerNameList::Instance().Name(e_Process_StreamMgr);
  IpcMessage message;
  (void)message.Allocate(StreamMgrMsg_GetRecording, 0, nullptr);
  if (ipc::NotifyServer(ipc, streamMgr, message, true) != 0) return {};
  const ipc::subscribe::Asked asked{streamMgr, ipc::ServerConnection(ipc, streamMgr)};
  if (ipc::subscribe::AwaitAnswer(ipc, timeoutMs, StreamMgrMsg_GetRecordingResponse, asked, message).Failed())
    return {};
  StringItem recording;
  (void)recording.DecodeMsg(message);
  return recording.Value();
}
