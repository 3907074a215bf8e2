#include "StateMgrNews.h"

#include <utility>

#include "Processes.h"

namespace bench {

StateMgrNews::StateMgrNews(const RunOptions& options, Vehicle& vehicle, Report& report, FullRun fullRun)
    : options_(options), vehicle_(vehicle), report_(report), fullRun_(std::move(fullRun)) {}

void StateMgrNews::Begin() {
  vehicle_.Ipc().RegisterHandler(BenchMsg_News, Handler, this);
}

void StateMgrNews::Handler(LinxIpc* ipc, void* self) {
  const IpcMessage& message = ipc->CurrentMessage();
  if (message.GetSender() != StateMgrName() || message.Size() == 0) return;
  const std::string text = TextOf(message, 1);
  static_cast<StateMgrNews*>(self)->Take(static_cast<News>(message.DataPtr()[0]),
                                         text.substr(0, text.find(' ')), text);
}

void StateMgrNews::Take(News news, const std::string& process, const std::string& text) {
  switch (news) {
    case News::kReady:
      ready_ = true;
      return report_.Event(text + vehicle_.SinceStart(process));
    case News::kStep:
      return TakeStep(process, text);
    case News::kFullRun:
      return TakeFullRun(process, text);
    case News::kFailed:
      vehicle_.MustEndNow(Vehicle::End::kBroken);
      return report_.Problem(text + vehicle_.SeeLog(process));
    case News::kStopped:
      return TakeStopped(process, text);
    case News::kSilent:
      return TakeSilent(process, text);
    case News::kAllStopped:
      allStopped_ = true;
      return report_.Event(std::to_string(othersStopped_) + " others answered the shut-down");
  }
}

void StateMgrNews::TakeStep(const std::string& process, const std::string& text) {
  const bool attached = vehicle_.NoteStart(process);
  if (attached) startEnd_ = Vehicle::Clock::now() + FromSeconds(options_.startDeadlineSeconds);
  vehicle_.Progress().Set(process, Stages::Stage::kStarted);
  if (IsWorthALine(process)) report_.Event(text + vehicle_.SinceStart(process));
}

void StateMgrNews::TakeFullRun(const std::string& process, const std::string& text) {
  if (IsWorthALine(process)) report_.Event(text + vehicle_.SinceStart(process));
  vehicle_.Progress().Set(process, Stages::Stage::kFullRun);
  fullRun_(process);
}

void StateMgrNews::TakeStopped(const std::string& process, const std::string& text) {
  if (IsWorthALine(process)) {
    report_.Event(text);
  } else {
    ++othersStopped_;
  }
}

// The end of the process was already reported.
void StateMgrNews::TakeSilent(const std::string& process, const std::string& text) {
  const Child* child = vehicle_.Processes().Find(process);
  if (child == nullptr || !child->ended) report_.Problem(text);
}

// Steps of the other processes are shown only during the drive, when they are rare.
bool StateMgrNews::IsWorthALine(const std::string& process) const {
  return report_.Driving() || process == MetadataMgrName();
}

}  // namespace bench
