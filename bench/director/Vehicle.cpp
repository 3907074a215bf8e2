#include "Vehicle.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <thread>

#include "Numbers.h"
#include "Processes.h"
#include "Roles.h"

namespace bench {

using std::chrono::milliseconds;

namespace {

std::string OwnProgram() {
  std::array<char, 4096> path;
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  return size < 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(size));
}

}  // namespace

Vehicle::Vehicle(const Surroundings& surroundings, Report& report)
    : surroundings_(surroundings), report_(report), program_(OwnProgram()), ipc_(kBenchName) {
  for (const e_Process role : Roles()) stages_.Set(ProcessName(role), Stage::kAbsent);
  stages_.Set(MetadataMgrName(), Stage::kAbsent);
}

bool Vehicle::Open() {
  const int error = ipc_.Init();
  if (error == 0) return true;
  report_.Line(error == EADDRINUSE
                   ? "Another bench runs in " + surroundings_.Directory()
                   : std::string("Cannot open the bench's endpoint: ") + std::strerror(error));
  return false;
}

bool Vehicle::Start(const std::string& name, const std::vector<std::string>& arguments) {
  std::string error;
  startTimes_[name] = Clock::now();
  if (children_.Start(name, arguments, surroundings_.LogFile(name), error)) return true;
  report_.Problem("cannot start " + name + ": " + error);
  return false;
}

bool Vehicle::StartRole(const std::string& name, const std::vector<std::string>& arguments) {
  std::vector<std::string> all{program_, "role", name};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return Start(name, all);
}

Actions Vehicle::ServerActions() {
  return {
      {"kill", [this](const Words& words) { return Kill(words[0]); }},
      {"start", [this](const Words& words) { return StartAgain(words[0]); }},
      {"mute", [this](const Words& words) { return Signal(words[0], SIGSTOP); }},
      {"wake", [this](const Words& words) { return Signal(words[0], SIGCONT); }},
  };
}

bool Vehicle::IsRunning(const std::string& server) const {
  const Child* child = children_.Find(server);
  return child != nullptr && !child->ended;
}

Outcome Vehicle::Kill(const std::string& server) {
  if (!stages_.Contains(server)) return {false, "it does not run"};
  killed_.insert(server);
  children_.Signal(server, SIGKILL);
  const bool ended = ReceiveUntil(Clock::now() + kEndTimeout, [&] { return !IsRunning(server); });
  return {ended, ended ? "dead" : "does not die"};
}

Outcome Vehicle::StartAgain(const std::string& server) {
  if (IsRunning(server)) return {false, "it runs already"};
  killed_.erase(server);
  lateStarts_.erase(server);
  if (!StartRole(server)) return {false, "it cannot be started"};
  const auto atFullRun = [&] { return stages_.IsAt(server, Stage::kFullRun); };
  if (ReceiveUntil(Clock::now() + milliseconds(kAnswerTimeoutMs), atFullRun)) return {true, "at full run"};
  return {false, "does not come to full run"};
}

Outcome Vehicle::Signal(const std::string& server, int signal) {
  if (!IsRunning(server)) return {false, "it does not run"};
  children_.Signal(server, signal);
  return {true, signal == SIGSTOP ? "stopped" : "goes on"};
}

bool Vehicle::ReceiveUntil(const Clock::time_point& end, const std::function<bool()>& done) {
  constexpr milliseconds kLook{50};  // interval between looks at the children
  while (!done()) {
    const auto left = end - Clock::now();
    if (left.count() <= 0) return false;
    if (left < milliseconds(1)) std::this_thread::sleep_for(left);  // Receive would wait longer
    const auto waitMs = std::min(std::chrono::floor<milliseconds>(left), kLook);
    (void)ipc_.Receive(static_cast<int>(waitMs.count()), 0, LinxIpc::emptyString, nullptr);
    LookAfterChildren();
    StartLateRoles();
  }
  return true;
}

void Vehicle::LookAfterChildren() {
  while (const Child* child = children_.NextEnded()) TakeEnd(*child);
}

void Vehicle::TakeEnd(const Child& child) {
  if (killed_.contains(child.name)) {
    (void)stages_.Remove(child.name);
    (void)SendMessage(ipc_, StateMgrName(), BenchMsg_Died, child.name);
    return;
  }
  const std::string text = child.name + " ended with " + child.HowItEnded() + SeeLog(child.name);
  // A process that is stopped before full run may fail.
  const bool mustEndWell = !stages_.Contains(child.name) || stages_.IsAt(child.name, Stage::kFullRun);
  if (!report_.Stopping()) {
    MustEndNow(End::kBroken);
    report_.Problem(text);
  } else if (child.status != 0 && !child.toldToEnd && mustEndWell) {
    report_.Problem(text);
  }
}

void Vehicle::StartLateRoles() {
  for (auto late = lateStarts_.begin(); late != lateStarts_.end();) {
    if (Clock::now() < late->second) {
      ++late;
      continue;
    }
    const std::string name = late->first;
    late = lateStarts_.erase(late);
    report_.Event("starting " + name);
    (void)StartRole(name);
  }
}

bool Vehicle::NoteStart(const std::string& process) {
  return startTimes_.try_emplace(process, Clock::now()).second;
}

std::string Vehicle::SinceStart(const std::string& process) const {
  const auto start = startTimes_.find(process);
  if (start == startTimes_.end()) return {};
  const std::chrono::duration<double, std::milli> since = Clock::now() - start->second;
  return " after " + Milliseconds(since.count());
}

std::string Vehicle::SeeLog(const std::string& process) const {
  return children_.Find(process) != nullptr ? "; see " + surroundings_.LogFile(process) : "";
}

}  // namespace bench
