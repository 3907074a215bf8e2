#include "StartUp.h"

#include <utility>

#include "Numbers.h"
#include "Processes.h"

namespace bench {

using std::chrono::milliseconds;

StartUp::StartUp(const RunOptions& options, const Drive& drive, Vehicle& vehicle, StateMgrNews& news,
                 Report& report, Execute execute)
    : options_(options),
      drive_(drive),
      vehicle_(vehicle),
      news_(news),
      report_(report),
      execute_(std::move(execute)) {}

bool StartUp::Run() {
  news_.SetStartEnd(Vehicle::Clock::now() + FromSeconds(options_.startDeadlineSeconds));
  TakeMissing();
  if (!StartStateMgr() || !StartRoles()) return false;
  ExecuteBefore();
  if (!StartMetadataMgr()) return false;
  StartMissingLater();
  return AwaitFullRun();
}

void StartUp::TakeMissing() {
  for (const Command& command : drive_.before) {
    if (NameOf(*command.verb) != "missing") continue;
    const Words& words = command.arguments;
    (void)vehicle_.Progress().Remove(words[0]);
    missing_[words[0]] = milliseconds(words.size() < 2 ? -1 : static_cast<int>(NumberOf(words[1])));
    report_.Event(JoinWords(command.words) + ": not started");
  }
}

bool StartUp::StartStateMgr() {
  std::vector<std::string> expected;
  for (const auto& [name, stage] : vehicle_.Progress()) expected.push_back(name);
  return vehicle_.StartRole(StateMgrName(), expected) &&
         Await([this] { return news_.StateMgrIsReady(); },
               [] { return std::string("StateMgr does not start"); });
}

bool StartUp::StartRoles() {
  for (const auto& [name, stage] : vehicle_.Progress()) {
    if (name != MetadataMgrName() && !vehicle_.StartRole(name)) return false;
  }
  return Await([this] { return vehicle_.Progress().OthersAt(MetadataMgrName(), Stages::Stage::kStarted); },
               [] { return std::string("the servers do not start"); });
}

void StartUp::ExecuteBefore() {
  for (const Command& command : drive_.before) {
    const bool isMissing = !command.arguments.empty() && missing_.contains(command.arguments[0]);
    if (!isMissing) execute_(command.words);
  }
}

bool StartUp::StartMetadataMgr() {
  if (options_.attach) {
    report_.Event("waiting for MetadataMgr; start it with");
    report_.Line("env " + Surroundings::Settings() + " MetadataMgr");
    news_.SetStartEnd(Vehicle::Clock::time_point::max());
    return true;
  }
  const std::string& own = vehicle_.Program();
  const std::string beside = own.substr(0, own.rfind('/') + 1) + MetadataMgrName();
  return vehicle_.Start(MetadataMgrName(), {options_.program.empty() ? beside : options_.program});
}

void StartUp::StartMissingLater() {
  for (const auto& [name, wait] : missing_) {
    if (wait.count() >= 0) vehicle_.StartRoleAt(name, Vehicle::Clock::now() + wait);
  }
}

bool StartUp::AwaitFullRun() {
  return Await([this] { return vehicle_.Progress().AllAt(Stages::Stage::kFullRun); },
               [this] {
                 return "not at full run within " + OneDecimal(options_.startDeadlineSeconds) +
                        " s, waiting for" + vehicle_.Progress().LastOnes();
               });
}

bool StartUp::Await(const std::function<bool()>& done, const std::function<std::string()>& problem) {
  if (vehicle_.ReceiveUntil(news_.StartEnd(), [&] { return vehicle_.MustEnd() || done(); })) {
    return !vehicle_.MustEnd();
  }
  report_.Problem(problem());
  return false;
}

}  // namespace bench
