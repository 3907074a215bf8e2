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

// Brings the processes to full run: the state manager, the servers, the lines "before", MetadataMgr, and the
// servers that the drive keeps back.
class StartUp {
 public:
  // Performs a command of the drive and reports its outcome.
  using Execute = std::function<void(const Words& words)>;

  // All must outlive this.
  StartUp(const RunOptions& options, const Drive& drive, Vehicle& vehicle, StateMgrNews& news, Report& report,
          Execute execute);

  // False, and reported, when not all came to full run.
  bool Run();

 private:
  void TakeMissing();
  bool StartStateMgr();
  bool StartRoles();
  void ExecuteBefore();
  bool StartMetadataMgr();
  void StartMissingLater();
  bool AwaitFullRun();
  // Receives until `done`, or the run must end; reports `problem` when that is too late.
  bool Await(const std::function<bool()>& done, const std::function<std::string()>& problem);

  const RunOptions& options_;
  const Drive& drive_;
  Vehicle& vehicle_;
  StateMgrNews& news_;
  Report& report_;
  const Execute execute_;
  std::map<std::string, std::chrono::milliseconds> missing_;  // how long; negative: until it is started
};

}  // namespace bench
