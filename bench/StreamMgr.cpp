#include "StreamMgr.h"

#include "MetadataMgrMessages.h"
#include "Processes.h"
#include "clients/StreamMgrApi.h"
#include "items/StringItem.h"

StreamMgr::StreamMgr() {
  actions_ = {
      {"record start", [this](const Words& arguments) { return Start(arguments); }},
      {"record stop", [this](const Words&) { return Stop(); }},
  };
}

void StreamMgr::Prepare(LinxIpc& ipc) {
  ipc.RegisterHandler(StreamMgrApi::kGetRecording, GetRecordingHandler, this);
}

void StreamMgr::GetRecordingHandler(LinxIpc* ipc, void* self) {
  IpcMessage& message = ipc->CurrentMessage();
  const std::string asker = message.GetSender();
  const StringItem recording(static_cast<StreamMgr*>(self)->recording_);
  if (message.Allocate(StreamMgrApi::kRecording, recording.Size(), nullptr) != 0) return;
  (void)recording.EncodeMsg(message);
  (void)ipc->Notify(asker, message, true);
}

Outcome StreamMgr::Start(const Words& arguments) {
  ++recordings_;
  recording_ = arguments.empty() ? "bench-" + std::to_string(recordings_) : arguments[0];
  return Tell(true, "recording event " + recording_);
}

Outcome StreamMgr::Stop() {
  const std::string text = recording_.empty() ? "none was running" : "end of recording event " + recording_;
  recording_.clear();
  return Tell(false, text);
}

Outcome StreamMgr::Tell(bool start, const std::string& text) {
  IpcMessage message;
  AllocateTick(message, MetadataMgrMsg_RecordStartStop, start ? 1 : 0);
  if (Ipc().Notify(ProcessName(e_Process_MetadataMgr), message, true) == 0) return {true, text};
  return {false, text + ", but MetadataMgr cannot be told"};
}
