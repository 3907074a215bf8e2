#include <cstring>

#include "Director.h"
#include "MetadataMgrQuestions.h"
#include "Processes.h"

// What comes from the other processes.

void Director::NewsHandler(LinxIpc* ipc, void* self) {
  const IpcMessage& message = ipc->CurrentMessage();
  if (message.GetSender() != StateMgrName() || message.Size() == 0) return;
  const std::string text = TextOf(message, 1);
  const std::size_t nameEnd = text.find(' ');
  static_cast<Director*>(self)->TakeNews(static_cast<News>(message.DataPtr()[0]), text.substr(0, nameEnd),
                                         text);
}

void Director::TakeNews(News news, const std::string& process, const std::string& text) {
  switch (news) {
    case News::kReady:
      stateMgrReady_ = true;
      report_.Event(text + SinceStartOf(process));
      break;
    case News::kStep:
      if (startTimes_.try_emplace(process, Clock::now()).second) {  // the attached one
        startEnd_ = Clock::now() + FromSeconds(options_.startDeadlineSeconds);
      }
      stages_.Set(process, Stage::kStarted);
      if (IsWorthALine(process)) report_.Event(text + SinceStartOf(process));
      break;
    case News::kFullRun:
      TakeFullRun(process, text);
      break;
    case News::kFailed:
      broken_ = true;
      report_.Problem(text + Log(process));
      break;
    case News::kStopped:
      if (IsWorthALine(process)) {
        report_.Event(text);
      } else {
        ++othersStopped_;
      }
      break;
    case News::kSilent: {
      const Child* child = children_.Find(process);
      if (child == nullptr || !child->ended) report_.Problem(text);  // a death was reported when it happened
      break;
    }
    case News::kAllStopped:
      allStopped_ = true;
      report_.Event(std::to_string(othersStopped_) + " others answered the shut-down");
      break;
  }
}

void Director::TakeFullRun(const std::string& process, const std::string& text) {
  if (IsWorthALine(process)) report_.Event(text + SinceStartOf(process));
  stages_.Set(process, Stage::kFullRun);
  if (driving_) TellDriveBegins(process);
  if (process != MetadataMgrName()) return;
  toFullRun_ = SinceStartOf(process).substr(std::strlen(" after "));
  const Outcome subscribed = SubscribeToBookmarks(ipc_, BookmarkHandler, this);
  if (!subscribed.ok) report_.Problem(subscribed.text);
}

void Director::DoHandler(LinxIpc* ipc, void* self) {
  auto& director = *static_cast<Director*>(self);
  const std::string asker = ipc->CurrentMessage().GetSender();
  const Words words = SplitWords(TextOf(ipc->CurrentMessage()));
  const Outcome outcome =
      director.driving_ ? director.Execute(words, asker) : Outcome{false, "the bench is not at full run"};
  Answer(*ipc, outcome, asker);
}

void Director::QuitHandler(LinxIpc* /*ipc*/, void* self) {
  auto& director = *static_cast<Director*>(self);
  director.report_.Event("a shut-down was asked for");
  director.quit_ = true;
}

// One that no command waited for.
void Director::BookmarkHandler(LinxIpc* /*ipc*/, void* self) {
  static_cast<Director*>(self)->report_.Event("bookmark notice received");
}

bool Director::IsWorthALine(const std::string& process) const {
  return driving_ || process == MetadataMgrName();
}
