#include "Director.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "MetadataMgrMessages.h"
#include "Processes.h"
#include "Roles.h"
#include "system/BigEndian.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kEndTimeout{2000};  // from its answer, or a signal, to the end of a process

milliseconds FromSeconds(double seconds) {
  return milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

std::string OneDecimal(double value) {
  char text[32];
  (void)std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

double Ms(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

const std::string& MetadataMgrName() {
  return ProcessName(e_Process_MetadataMgr);
}
const std::string& StateMgrName() {
  return ProcessName(e_Process_StateMgr);
}

}  // namespace

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
      screen_(options.speed),
      ipc_(kBenchName),
      actions_(MetadataMgrActions(ipc_)) {
  actions_["quit"] = [this](const Words&) {
    quit_ = true;
    return Outcome{true, "shutting down"};
  };
  actions_["kill"] = [this](const Words& words) { return Kill(words[0]); };
  actions_["start"] = [this](const Words& words) { return Start(words[0]); };
  actions_["mute"] = [this](const Words& words) { return Signal(words[0], SIGSTOP); };
  actions_["wake"] = [this](const Words& words) { return Signal(words[0], SIGCONT); };
  for (const RoleRow& role : Roles()) stages_[ProcessName(role.process)] = Stage::kAbsent;
  stages_[MetadataMgrName()] = Stage::kAbsent;
}

bool Director::Run() {
  if (!Open()) return false;
  surroundings_.BeginSentLists();
  char speed[32];
  (void)std::snprintf(speed, sizeof speed, "%g", options_.speed);
  screen_.Line("Drive " + drive_.name + ", speed " + speed + ", in " + surroundings_.Directory());
  if (StartAll()) Play();
  StopAll();
  SayHowMetadataMgrWent();
  SayHowItWent();
  return problems_ == 0;
}

bool Director::Open() {
  if (const int error = ipc_.Init(); error != 0) {
    screen_.Line(error == EADDRINUSE
                     ? "Another bench runs in " + surroundings_.Directory()
                     : std::string("Cannot open the bench's endpoint: ") + std::strerror(error));
    return false;
  }
  ipc_.RegisterHandler(BenchMsg_News, NewsHandler, this);
  ipc_.RegisterHandler(BenchMsg_Do, DoHandler, this);
  ipc_.RegisterShutdown(QuitHandler, this);
  return true;
}

// ---- Start

bool Director::StartAll() {
  startEnd_ = Clock::now() + FromSeconds(options_.startDeadlineSeconds);
  if (!ReadMissing() || !StartStateMgr() || !StartRoles()) return false;
  for (const Command& command : drive_.before) {
    if (!missing_.contains(command.arguments.empty() ? "" : command.arguments[0])) {
      (void)Execute(command.words, {});
    }
  }
  if (!StartMetadataMgr()) return false;
  for (const auto& [name, wait] : missing_) {
    if (wait.count() >= 0) lateStarts_[name] = Clock::now() + wait;
  }
  const bool inTime = ReceiveUntil(startEnd_, [this] { return MustEnd() || AllAt(Stage::kFullRun); });
  if (inTime) return !MustEnd();
  Problem("not at full run within " + OneDecimal(options_.startDeadlineSeconds) + " s, waiting for" +
          LastOnes());
  return false;
}

bool Director::ReadMissing() {
  const auto read = [this](const Command& command) {
    if (NameOf(*command.verb) != "missing") return true;
    const std::string& name = command.arguments[0];
    if (stages_.erase(name) == 0) {
      Problem("'missing " + name + "' is not possible: it leads the others");
      return false;
    }
    missing_[name] = milliseconds(command.arguments.size() < 2 ? -1 : int(NumberOf(command.arguments[1])));
    screen_.Event(JoinWords(command.words) + ": not started");
    return true;
  };
  return std::all_of(drive_.before.begin(), drive_.before.end(), read);
}

bool Director::StartRoles() {
  for (const auto& [name, stage] : stages_) {
    if (name != MetadataMgrName() && !StartRole(name)) return false;
  }
  if (ReceiveUntil(startEnd_, [this] { return MustEnd() || RolesStarted(); })) return !MustEnd();
  Problem("the servers do not start");
  return false;
}

void Director::StartLateOnes() {
  for (auto late = lateStarts_.begin(); late != lateStarts_.end();) {
    if (Clock::now() < late->second) {
      ++late;
      continue;
    }
    const std::string name = late->first;
    late = lateStarts_.erase(late);
    screen_.Event("starting " + name);
    (void)StartRole(name);
  }
}

bool Director::StartRole(const std::string& name) {
  return StartChild(name, {program_, "role", name});
}

bool Director::StartStateMgr() {
  std::vector<std::string> arguments{program_, "role", StateMgrName()};
  for (const auto& [name, stage] : stages_) arguments.push_back(name);
  if (!StartChild(StateMgrName(), arguments)) return false;
  if (ReceiveUntil(startEnd_, [this] { return MustEnd() || stateMgrReady_; })) return !MustEnd();
  Problem("StateMgr does not start");
  return false;
}

bool Director::StartMetadataMgr() {
  if (options_.attach) {
    screen_.Event("waiting for MetadataMgr; start it with");
    screen_.Line("env " + Surroundings::Settings() + " MetadataMgr");
    startEnd_ = Clock::time_point::max();
    return true;
  }
  const std::string beside = program_.substr(0, program_.rfind('/') + 1) + MetadataMgrName();
  return StartChild(MetadataMgrName(), {options_.program.empty() ? beside : options_.program});
}

bool Director::StartChild(const std::string& name, const std::vector<std::string>& arguments) {
  std::string error;
  startTimes_[name] = Clock::now();
  if (children_.Start(name, arguments, surroundings_.LogFile(name), error)) return true;
  Problem("cannot start " + name + ": " + error);
  return false;
}

// ---- Drive

void Director::Play() {
  screen_.BeginDrive();
  driveBegin_ = Clock::now();
  driving_ = true;
  for (const auto& [name, stage] : stages_) TellDriveBegins(name);
  for (const DriveLine& line : drive_.lines) {
    if (ReceiveUntil(screen_.WhenDue(line.at), [this] { return MustEnd(); })) break;
    ++linesPlayed_;
    (void)Execute(line.command.words, {});
  }
  (void)ReceiveUntil(Clock::time_point::max(), [this] { return MustEnd(); });
  driving_ = false;
  driveSeconds_ = screen_.DriveSeconds();
}

// To readings the time of the drive is what counts.
void Director::TellDriveBegins(const std::string& process) {
  const auto begin = std::chrono::duration_cast<std::chrono::microseconds>(driveBegin_.time_since_epoch());
  const std::string text = std::to_string(begin.count()) + " " + std::to_string(options_.speed);
  if (process != MetadataMgrName()) (void)SendMessage(ipc_, process, BenchMsg_DriveBegins, text);
}

Outcome Director::Execute(const Words& words, const std::string& from) {
  const std::string stamp = screen_.Stamp();
  Command command;
  Outcome outcome{false, {}};
  if (ParseCommand(words, command, outcome.text)) {
    const std::string performer = PerformerOf(command);
    outcome = performer == kBenchName ? Perform(actions_, words) : Ask(ipc_, performer, words);
  }
  const std::string what = JoinWords(words) + (from.empty() ? "" : " (" + from + ")");
  if (outcome.ok) {
    screen_.Event(stamp, what + ": " + outcome.text);
  } else {
    Problem(stamp, what + ": " + outcome.text);
  }
  return outcome;
}

template <typename Done>
bool Director::ReceiveUntil(const Clock::time_point& end, Done done) {
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
      stages_.erase(child->name);
      (void)SendMessage(ipc_, StateMgrName(), BenchMsg_Died, child->name);
      continue;
    }
    const std::string text = child->name + " ended with " + child->HowItEnded() + Log(child->name);
    if (!stopping_) {
      broken_ = true;
      Problem(text);
    } else if (child->status != 0 && !signalled_ && MustEndWell(child->name)) {
      Problem(text);
    }
  }
}

// ---- What happens to a server

bool Director::IsRunning(const std::string& server) const {
  const Child* child = children_.Find(server);
  return child != nullptr && !child->ended;
}

Outcome Director::Kill(const std::string& server) {
  if (!stages_.contains(server)) return {false, server + " leads the others, or does not run"};
  killed_.insert(server);
  children_.Signal(server, SIGKILL);
  const bool ended = ReceiveUntil(Clock::now() + kEndTimeout, [&] { return !IsRunning(server); });
  return {ended, ended ? "dead" : "does not die"};
}

Outcome Director::Start(const std::string& server) {
  if (IsRunning(server)) return {false, "it runs"};
  killed_.erase(server);
  lateStarts_.erase(server);
  if (!StartRole(server)) return {false, "it cannot be started"};
  const auto atFullRun = [&] { return stages_.contains(server) && stages_[server] == Stage::kFullRun; };
  if (ReceiveUntil(Clock::now() + milliseconds(kAnswerTimeoutMs), atFullRun)) return {true, "at full run"};
  return {false, "does not come to full run"};
}

Outcome Director::Signal(const std::string& server, int signal) {
  if (!IsRunning(server)) return {false, "it does not run"};
  children_.Signal(server, signal);
  return {true, signal == SIGSTOP ? "stopped" : "goes on"};
}

// ---- Shut-down

void Director::StopAll() {
  stopping_ = true;
  lateStarts_.clear();
  (void)children_.SignalAll(SIGCONT);
  screen_.EndDrive();
  if (const Child* metadataMgr = children_.Find(MetadataMgrName())) {
    peakMemoryKb_ = PeakMemoryKb(metadataMgr->id);
  }
  const milliseconds deadline = FromSeconds(options_.stopDeadlineSeconds);
  std::string payload(4, '\0');
  PutU32(reinterpret_cast<unsigned char*>(payload.data()), static_cast<std::uint32_t>(deadline.count()));
  if (SendMessage(ipc_, StateMgrName(), BenchMsg_StopSystem, payload) == 0) {
    // First MetadataMgr, then the others together.
    const bool stopped =
        ReceiveUntil(Clock::now() + 2 * deadline + kEndTimeout, [this] { return allStopped_; });
    if (!stopped) Problem("StateMgr did not finish the shut-down" + Log(StateMgrName()));
    (void)SendMessage(ipc_, StateMgrName(), LinxIpc::kShutdownNotice);
  }
  EndUnannounced();
  EndLeftovers();
}

// The state manager does not know yet of a process that is just starting.
void Director::EndUnannounced() {
  for (const auto& [name, stage] : stages_) {
    if (stage == Stage::kAbsent) children_.Signal(name, SIGTERM);
  }
}

void Director::EndLeftovers() {
  const auto allEnded = [this] { return children_.AllEnded(); };
  struct Blow {
    int signal;
    const char* name;
  };
  for (const Blow& blow : {Blow{SIGTERM, "SIGTERM"}, Blow{SIGKILL, "SIGKILL"}}) {
    if (ReceiveUntil(Clock::now() + kEndTimeout, allEnded)) return;
    signalled_ = true;
    Problem("still running, sent " + std::string(blow.name) + ":" + children_.SignalAll(blow.signal));
  }
  if (!ReceiveUntil(Clock::now() + kEndTimeout, allEnded)) Problem("a process cannot be ended");
}

// ---- What comes from others

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
      screen_.Event(text + SinceStartOf(process));
      break;
    case News::kStep:
      if (startTimes_.try_emplace(process, Clock::now()).second) {  // the attached one
        startEnd_ = Clock::now() + FromSeconds(options_.startDeadlineSeconds);
      }
      stages_[process] = Stage::kStarted;
      if (IsWorthALine(process)) screen_.Event(text + SinceStartOf(process));
      break;
    case News::kFullRun:
      TakeFullRun(process, text);
      break;
    case News::kFailed:
      broken_ = true;
      Problem(text + Log(process));
      break;
    case News::kStopped:
      if (IsWorthALine(process)) {
        screen_.Event(text);
      } else {
        ++othersStopped_;
      }
      break;
    case News::kSilent: {
      const Child* child = children_.Find(process);
      if (child == nullptr || !child->ended) Problem(text);  // a death was reported when it happened
      break;
    }
    case News::kAllStopped:
      allStopped_ = true;
      screen_.Event(std::to_string(othersStopped_) + " others answered the shut-down");
      break;
  }
}

void Director::TakeFullRun(const std::string& process, const std::string& text) {
  if (IsWorthALine(process)) screen_.Event(text + SinceStartOf(process));
  stages_[process] = Stage::kFullRun;
  if (driving_) TellDriveBegins(process);
  if (process != MetadataMgrName()) return;
  toFullRun_ = SinceStartOf(process);
  const Outcome subscribed = SubscribeToBookmarks(ipc_, BookmarkHandler, this);
  if (!subscribed.ok) Problem(subscribed.text);
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
  director.screen_.Event("a shut-down was asked for");
  director.quit_ = true;
}

// One that no command waited for.
void Director::BookmarkHandler(LinxIpc* /*ipc*/, void* self) {
  static_cast<Director*>(self)->screen_.Event("bookmark notice received");
}

// ---- Reports

bool Director::MustEndWell(const std::string& process) const {
  const auto stage = stages_.find(process);
  return stage == stages_.end() || stage->second == Stage::kFullRun;
}

bool Director::AllAt(Stage stage) const {
  return std::all_of(stages_.begin(), stages_.end(),
                     [stage](const auto& process) { return process.second >= stage; });
}

// The others wait for these.
std::string Director::LastOnes() const {
  Stage last = Stage::kFullRun;
  for (const auto& [name, stage] : stages_) last = std::min(last, stage);
  std::string names;
  for (const auto& [name, stage] : stages_) {
    if (stage == last) names += " " + name;
  }
  return names;
}

bool Director::RolesStarted() const {
  return std::all_of(stages_.begin(), stages_.end(), [](const auto& process) {
    return process.first == MetadataMgrName() || process.second >= Stage::kStarted;
  });
}

bool Director::IsWorthALine(const std::string& process) const {
  return driving_ || process == MetadataMgrName();
}

std::string Director::SinceStartOf(const std::string& process) const {
  const auto start = startTimes_.find(process);
  if (start == startTimes_.end()) return {};
  const std::chrono::duration<double, std::milli> since = Clock::now() - start->second;
  return " after " + Milliseconds(since.count());
}

std::string Director::Log(const std::string& process) const {
  return children_.Find(process) != nullptr ? "; see " + surroundings_.LogFile(process) : "";
}

void Director::Problem(const std::string& text) {
  Problem(screen_.Stamp(), text);
}

void Director::Problem(const std::string& stamp, const std::string& text) {
  screen_.Event(stamp, "FAILED: " + text);
  if (problems_++ == 0) firstProblem_ = text;
}

void Director::SayHowMetadataMgrWent() const {
  const Child* child = children_.Find(MetadataMgrName());
  if (child == nullptr || !child->ended) return;
  const double user = Ms(child->usage.ru_utime);
  const double system = Ms(child->usage.ru_stime);
  const unsigned long peakKb =
      peakMemoryKb_ != 0 ? peakMemoryKb_ : static_cast<unsigned long>(child->usage.ru_maxrss);
  screen_.Line("MetadataMgr: " + child->HowItEnded() + ", peak memory " + std::to_string(peakKb) +
               " kB, CPU " + Milliseconds(user + system) + " (user " + Milliseconds(user) + ", system " +
               Milliseconds(system) + ")");
}

void Director::SayHowItWent() const {
  std::string text = problems_ == 0 ? "Good: " : "FAILED: ";
  text += std::to_string(linesPlayed_) + " of " + std::to_string(drive_.lines.size()) + " lines in " +
          OneDecimal(driveSeconds_) + " s of the drive";
  if (!toFullRun_.empty()) text += "; start to full run" + toFullRun_.substr(std::strlen(" after"));
  if (problems_ > 0) text += "; problems: " + std::to_string(problems_) + ", the first: " + firstProblem_;
  screen_.Line(text);
}
