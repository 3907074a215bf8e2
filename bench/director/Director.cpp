#include "Director.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "MetadataMgrQuestions.h"
#include "Processes.h"
#include "Roles.h"

using std::chrono::milliseconds;

std::string OwnProgram() {
  std::array<char, 4096> path;
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  return size < 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(size));
}

Director::Director(const RunOptions& options, const Drive& drive, const Surroundings& surroundings)
    : options_(options),
      drive_(drive),
      surroundings_(surroundings),
      program_(OwnProgram()),
      report_(options.speed),
      ipc_(kBenchName),
      actions_(MetadataMgrActions(ipc_, options.speed)) {
  actions_["quit"] = [this](const Words&) {
    quit_ = true;
    return Outcome{true, "shutting down"};
  };
  actions_["kill"] = [this](const Words& words) { return Kill(words[0]); };
  actions_["start"] = [this](const Words& words) { return Start(words[0]); };
  actions_["mute"] = [this](const Words& words) { return Signal(words[0], SIGSTOP); };
  actions_["wake"] = [this](const Words& words) { return Signal(words[0], SIGCONT); };
  for (const RoleRow& role : Roles()) stages_.Set(ProcessName(role.process), Stage::kAbsent);
  stages_.Set(MetadataMgrName(), Stage::kAbsent);
}

bool Director::Run() {
  if (!Open()) return false;
  surroundings_.BeginSentLists();
  char speed[32];
  (void)std::snprintf(speed, sizeof speed, "%g", options_.speed);
  report_.Line("Drive " + drive_.name + ", speed " + speed + ", in " + surroundings_.Directory());
  if (StartAll()) Play();
  StopAll();
  const Child* child = children_.Find(MetadataMgrName());
  if (child != nullptr && child->ended) report_.SayHowItEnded(*child, peakMemoryKb_);
  report_.SayHowItWent(linesPlayed_, drive_.lines.size(), driveSeconds_, toFullRun_);
  return report_.Good();
}

bool Director::Open() {
  if (const int error = ipc_.Init(); error != 0) {
    report_.Line(error == EADDRINUSE
                     ? "Another bench runs in " + surroundings_.Directory()
                     : std::string("Cannot open the bench's endpoint: ") + std::strerror(error));
    return false;
  }
  ipc_.RegisterHandler(BenchMsg_News, NewsHandler, this);
  ipc_.RegisterHandler(BenchMsg_Do, DoHandler, this);
  ipc_.RegisterShutdown(QuitHandler, this);
  return true;
}

void Director::Play() {
  report_.BeginDrive();
  driveBegin_ = Clock::now();
  driving_ = true;
  TellDriveBegins(StateMgrName());
  for (const auto& [name, stage] : stages_) TellDriveBegins(name);
  for (const DriveLine& line : drive_.lines) {
    if (ReceiveUntil(report_.WhenDue(line.at), [this] { return MustEnd(); })) break;
    ++linesPlayed_;
    (void)Execute(line.command.words, {});
  }
  (void)ReceiveUntil(Clock::time_point::max(), [this] { return MustEnd(); });
  driving_ = false;
  driveSeconds_ = report_.DriveSeconds();
}

// To readings the time of the drive is what counts.
void Director::TellDriveBegins(const std::string& process) {
  const auto begin = std::chrono::duration_cast<std::chrono::microseconds>(driveBegin_.time_since_epoch());
  const std::string text = std::to_string(begin.count()) + " " + std::to_string(options_.speed);
  if (process != MetadataMgrName()) (void)SendMessage(ipc_, process, BenchMsg_DriveBegins, text);
}

Outcome Director::Execute(const Words& words, const std::string& from) {
  const std::string stamp = report_.Stamp();
  Command command;
  Outcome outcome{false, {}};
  if (ParseCommand(words, command, outcome.text)) {
    const std::string performer = PerformerOf(command);
    outcome = performer == kBenchName ? Perform(actions_, words) : Ask(ipc_, performer, words);
  }
  const std::string what = JoinWords(words) + (from.empty() ? "" : " (" + from + ")");
  if (outcome.ok) {
    report_.Event(stamp, what + ": " + outcome.text);
  } else {
    report_.Problem(stamp, what + ": " + outcome.text);
  }
  return outcome;
}

bool Director::ReceiveUntil(const Clock::time_point& end, const std::function<bool()>& done) {
  constexpr milliseconds kLook{50};  // at the children
  while (!done()) {
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
    if (left.count() <= 0) return false;
    (void)ipc_.Receive(static_cast<int>(std::min(left, kLook).count()), 0, LinxIpc::emptyString, nullptr);
    LookAfterChildren();
    StartLateOnes();
  }
  return true;
}

void Director::LookAfterChildren() {
  while (const Child* child = children_.NextEnded()) {
    if (killed_.contains(child->name)) {
      (void)stages_.Remove(child->name);
      (void)SendMessage(ipc_, StateMgrName(), BenchMsg_Died, child->name);
      continue;
    }
    const std::string text = child->name + " ended with " + child->HowItEnded() + Log(child->name);
    if (!stopping_) {
      broken_ = true;
      report_.Problem(text);
    } else if (child->status != 0 && !signalled_ && MustEndWell(child->name)) {
      report_.Problem(text);
    }
  }
}
