#include <algorithm>

#include "Director.h"
#include "Processes.h"

using std::chrono::milliseconds;

// How the processes are started.

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
  const bool inTime = ReceiveUntil(startEnd_, [this] { return MustEnd() || stages_.AllAt(Stage::kFullRun); });
  if (inTime) return !MustEnd();
  report_.Problem("not at full run within " + OneDecimal(options_.startDeadlineSeconds) + " s, waiting for" +
                  stages_.LastOnes());
  return false;
}

bool Director::ReadMissing() {
  const auto read = [this](const Command& command) {
    if (NameOf(*command.verb) != "missing") return true;
    const std::string& name = command.arguments[0];
    if (!stages_.Remove(name)) {
      report_.Problem("'missing " + name + "' is not possible: it leads the others");
      return false;
    }
    missing_[name] = milliseconds(command.arguments.size() < 2 ? -1 : int(NumberOf(command.arguments[1])));
    report_.Event(JoinWords(command.words) + ": not started");
    return true;
  };
  return std::all_of(drive_.before.begin(), drive_.before.end(), read);
}

bool Director::StartRoles() {
  for (const auto& [name, stage] : stages_) {
    if (name != MetadataMgrName() && !StartRole(name)) return false;
  }
  if (ReceiveUntil(startEnd_,
                   [this] { return MustEnd() || stages_.OthersAt(MetadataMgrName(), Stage::kStarted); }))
    return !MustEnd();
  report_.Problem("the servers do not start");
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
    report_.Event("starting " + name);
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
  report_.Problem("StateMgr does not start");
  return false;
}

bool Director::StartMetadataMgr() {
  if (options_.attach) {
    report_.Event("waiting for MetadataMgr; start it with");
    report_.Line("env " + Surroundings::Settings() + " MetadataMgr");
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
  report_.Problem("cannot start " + name + ": " + error);
  return false;
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
