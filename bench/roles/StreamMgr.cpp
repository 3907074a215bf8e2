#include "StreamMgr.h"

#include "Processes.h"
#include "SentLog.h"
#include "TickMessage.h"
#include "clients/StreamMgrApi.h"
#include "items/StringItem.h"
#include "system/Messages.h"

namespace bench {

StreamMgr::StreamMgr() {
  actions_ = {
      {"direct record start", [this](const Words& arguments) { return Start(arguments); }},
      {"direct record stop", [this](const Words&) { return Stop(); }},
  };
}

void StreamMgr::Prepare(LinxIpc& ipc) {
  ipc.RegisterHandler(StreamMgrMsg_GetRecording, GetRecordingHandler, this);
}

bool StreamMgr::SubscribeToServers(LinxIpc& ipc, bool /*flag*/) {
  constexpr unsigned int kStarted = 30752;
  constexpr unsigned int kStopped = 30753;
  if (!stateMgr_) stateMgr_ = std::make_unique<StateMgrClient>(ipc);
  return stateMgr_->SubscribeForRecordStart(kStarted, RecordStartHandler, this) &&
         stateMgr_->SubscribeForRecordStop(kStopped, RecordStopHandler, this);
}

void StreamMgr::ProcessRestarted(LinxIpc& /*ipc*/, e_Process process) {
  if (process == e_Process_StateMgr && stateMgr_) (void)stateMgr_->Resubscribe();
}

void StreamMgr::RecordStartHandler(LinxIpc* /*ipc*/, void* self) {
  static_cast<StreamMgr*>(self)->Begin({});
}

void StreamMgr::RecordStopHandler(LinxIpc* /*ipc*/, void* self) {
  static_cast<StreamMgr*>(self)->recording_.clear();
}

void StreamMgr::GetRecordingHandler(LinxIpc* ipc, void* self) {
  IpcMessage& message = ipc->CurrentMessage();
  const std::string asker = message.GetSender();
  const StringItem recording(static_cast<StreamMgr*>(self)->recording_);
  if (message.Allocate(StreamMgrMsg_GetRecordingResponse, recording.Size(), nullptr) != 0) return;
  (void)recording.EncodeMsg(message);
  (void)ipc->Notify(asker, message, true);
}

void StreamMgr::Begin(const std::string& id) {
  ++recordings_;
  recording_ = id.empty() ? "bench-" + std::to_string(recordings_) : id;
}

Outcome StreamMgr::Start(const Words& arguments) {
  Begin(arguments.empty() ? std::string() : arguments[0]);
  const bool beforeTheStart = stateMgr_ == nullptr;  // MetadataMgr will ask
  if (beforeTheStart) return {true, "recording event " + recording_ + " is running"};
  return Tell(true, "recording event " + recording_);
}

Outcome StreamMgr::Stop() {
  const std::string text = recording_.empty() ? "none was running" : "end of recording event " + recording_;
  recording_.clear();
  return Tell(false, text);
}

Outcome StreamMgr::Tell(bool start, const std::string& text) {
  IpcMessage message;
  const std::uint32_t tick = AllocateTick(message, MetadataMgrMsg_RecordStartStop, start ? 1 : 0);
  if (Ipc().Notify(MetadataMgrName(), message, true) != 0) {
    return {false, text + ", but MetadataMgr cannot be told"};
  }
  const std::string event = start ? "direct-record-start " : "direct-record-stop ";
  LogSent(ProcessName(e_Process_StreamMgr), event + std::to_string(tick));
  return {true, text};
}

}  // namespace bench
