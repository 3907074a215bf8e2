#include "Director.h"

#include <cstdio>
#include <cstring>

#include "MetadataMgrQuestions.h"
#include "Processes.h"
#include "ShutDown.h"
#include "StartUp.h"

namespace bench {

namespace {

// A payload waits until MetadataMgr has taken it.
int TimeoutMs(const Command& command) {
  return NameOf(*command.verb) == "payload" ? kTakenTimeoutMs + kAnswerTimeoutMs : kAnswerTimeoutMs;
}

}  // namespace

Director::Director(const RunOptions& options, const Drive& drive, const Surroundings& surroundings)
    : options_(options),
      drive_(drive),
      surroundings_(surroundings),
      report_(options.speed),
      vehicle_(surroundings, report_),
      news_(options, vehicle_, report_, [this](const std::string& process) { TakeFullRun(process); }),
      actions_(MetadataMgrActions(vehicle_.Ipc(), options.speed)) {
  actions_.merge(vehicle_.ServerActions());
  actions_["quit"] = [this](const Words&) {
    vehicle_.MustEndNow(Vehicle::End::kAskedFor);
    return Outcome{true, "shutting down"};
  };
}

bool Director::Run() {
  if (!Open()) return false;
  surroundings_.BeginSentLists();
  char speed[32];
  (void)std::snprintf(speed, sizeof speed, options_.speed < kMaxSpeed ? "%g" : "max", options_.speed);
  report_.Line("Drive " + drive_.name + ", speed " + speed + ", in " + surroundings_.Directory());
  StartUp startUp(options_, drive_, vehicle_, news_, report_,
                  [this](const Words& words) { (void)Execute(words, {}); });
  if (startUp.Run()) Play();
  ShutDown shutDown(options_, vehicle_, news_, report_);
  shutDown.Run();
  const Child* child = vehicle_.Processes().Find(MetadataMgrName());
  if (child != nullptr && child->ended) report_.SayHowItEnded(*child, shutDown.PeakMemoryKb());
  report_.SayHowItWent(linesPlayed_, drive_.IsReplay() ? linesPlayed_ : drive_.lines.size(), driveSeconds_,
                       toFullRun_);
  return report_.Good();
}

bool Director::Open() {
  if (!vehicle_.Open()) return false;
  news_.Begin();
  LinxIpc& ipc = vehicle_.Ipc();
  ipc.RegisterHandler(BenchMsg_Do, DoHandler, this);
  ipc.RegisterHandler(BenchMsg_Said, SaidHandler, this);
  ipc.RegisterShutdown(QuitHandler, this);
  return true;
}

void Director::Play() {
  AwaitBegin();
  report_.BeginDrive();
  clock_ = DriveClock(report_.DriveBegin(), options_.speed);
  TellDriveBegins(StateMgrName());
  for (const auto& [name, stage] : vehicle_.Progress()) TellDriveBegins(name);
  if (drive_.IsReplay()) {
    PlayReplay();
  } else {
    PlayLines();
  }
  const auto mustEnd = [this] { return vehicle_.MustEnd(); };
  (void)vehicle_.ReceiveUntil(Vehicle::Clock::time_point::max(), mustEnd);
  driveSeconds_ = report_.DriveSeconds();
}

void Director::PlayLines() {
  for (const DriveLine& line : drive_.lines) {
    if (vehicle_.ReceiveUntil(report_.WhenDue(line.at), [this] { return vehicle_.MustEnd(); })) return;
    ++linesPlayed_;
    (void)Execute(line.command.words, {});
  }
}

Outcome Director::Execute(const Words& words, const std::string& from) {
  const std::string stamp = report_.Stamp();
  Command command;
  Outcome outcome{false, {}};
  if (ParseCommand(words, command, outcome.text)) {
    const std::string performer = PerformerOf(command);
    outcome = performer == kBenchName ? Perform(actions_, words)
                                      : Ask(vehicle_.Ipc(), performer, words, TimeoutMs(command));
  }
  if (drive_.IsReplay() && outcome.ok && from.empty()) return outcome;  // there may be a million of them
  if (!outcome.ok && drive_.IsReplay() && IsCutShort()) return outcome;
  const std::string what = JoinWords(words) + (from.empty() ? "" : " (" + from + ")");
  if (outcome.ok) {
    report_.Event(stamp, what + ": " + outcome.text);
  } else {
    report_.Problem(stamp, what + ": " + outcome.text);
  }
  return outcome;
}

void Director::TakeFullRun(const std::string& process) {
  if (report_.Driving()) TellDriveBegins(process);
  if (process != MetadataMgrName()) return;
  toFullRun_ = vehicle_.SinceStart(process).substr(std::strlen(" after "));
  const Outcome subscribed = SubscribeToBookmarks(vehicle_.Ipc(), BookmarkHandler, this);
  if (!subscribed.ok) report_.Problem(subscribed.text);
}

// The servers send readings by the time of the drive.
void Director::TellDriveBegins(const std::string& process) {
  if (process == MetadataMgrName()) return;
  (void)SendMessage(vehicle_.Ipc(), process, BenchMsg_DriveBegins, clock_.Text());
}

void Director::DoHandler(LinxIpc* ipc, void* self) {
  auto& director = *static_cast<Director*>(self);
  const std::string asker = ipc->CurrentMessage().GetSender();
  const Words words = SplitWords(TextOf(ipc->CurrentMessage()));
  const Outcome outcome = director.report_.Driving() ? director.Execute(words, asker)
                                                     : Outcome{false, "the bench is not at full run"};
  Answer(*ipc, outcome, asker);
}

void Director::SaidHandler(LinxIpc* ipc, void* self) {
  const IpcMessage& message = ipc->CurrentMessage();
  static_cast<Director*>(self)->report_.Event(message.GetSender() + ": " + TextOf(message));
}

void Director::QuitHandler(LinxIpc* /*ipc*/, void* self) {
  auto& director = *static_cast<Director*>(self);
  director.report_.Event("a shut-down was asked for");
  director.vehicle_.MustEndNow(Vehicle::End::kAskedFor);
}

// Handles a notice that no command waits for.
void Director::BookmarkHandler(LinxIpc* /*ipc*/, void* self) {
  static_cast<Director*>(self)->report_.Event("bookmark notice received");
}

}  // namespace bench
