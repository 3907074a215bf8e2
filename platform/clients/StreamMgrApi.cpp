#include "clients/StreamMgrApi.h"

#include "SubscribeProtocol.h"
#include "ipc/LinxServerNameList.h"
#include "ipc/PeerQueue.h"
#include "items/StringItem.h"
#include "system/Messages.h"
#include "system/Process.h"

std::string StreamMgrApi::CurrentlyRecordingREID(LinxIpc& ipc, int timeoutMs) {
  const std::string& streamMgr = LinxServerNameList::Instance().Name(e_Process_StreamMgr);
  IpcMessage message;
  (void)message.Allocate(StreamMgrMsg_GetRecording, 0, nullptr);
  if (ipc.Notify(streamMgr, message, true) != 0) return {};
  const subscribe::Asked asked{streamMgr, PeerConnection(ipc, streamMgr)};
  if (subscribe::AwaitAnswer(ipc, timeoutMs, StreamMgrMsg_GetRecordingResponse, asked, message) != 0)
    return {};
  StringItem recording;
  (void)recording.DecodeMsg(message);
  return recording.Value();
}
