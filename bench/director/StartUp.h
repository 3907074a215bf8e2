#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>

#include "Drive.h"
#include "RunOptions.h"
#include "StateMgrNews.h"
#include "Vehicle.h"

namespace bench {

// Starts the state manager and the servers, performs the lines "before", starts MetadataMgr, then the servers
// that the drive starts late, and waits for full run.
class StartUp {
 public:
  // Performs a command of the drive and reports its outcome.
  using Execute = std::function<void(const Words& words)>;

  // All must outlive this.
  StartUp(const RunOptions& options, const Drive& drive, Vehicle& vehicle, StateMgrNews& news, Report& report,
          Execute execute);

  // Returns false, and reports it, when a process did not reach full run.
  bool Run();

 private:
  void TakeMissing();
  bool StartStateMgr();
  bool StartRoles();
  void ExecuteBefore();
  bool StartMetadataMgr();
  void StartMissingLater();
  bool AwaitFullRun();
  // Receives until `done` holds or the run must end. Reports `problem` when the deadline passes first.
  bool Await(const std::function<bool()>& done, const std::function<std::string()>& problem);

  const RunOptions& options_;
  const Drive& drive_;
  Vehicle& vehicle_;
  StateMgrNews& news_;
  Report& report_;
  const Execute execute_;
  std::map<std::string, std::chrono::milliseconds> missing_;  // negative: until a command starts the server
};

}  // namespace bench
