#pragma once

#include <functional>
#include <string>

#include "BenchMessages.h"
#include "RunOptions.h"
#include "Vehicle.h"

namespace bench {

// Handles the news of the state manager: keeps the stage of each process, and reports events.
class StateMgrNews {
 public:
  // Called when the state manager has sent full run to a process.
  using FullRun = std::function<void(const std::string& process)>;

  // All must outlive this.
  StateMgrNews(const RunOptions& options, Vehicle& vehicle, Report& report, FullRun fullRun);

  // Handles the state manager's messages from now on.
  void Begin();

  bool StateMgrIsReady() const { return ready_; }
  bool AllStopped() const { return allStopped_; }
  // The deadline for full run. It moves when an attached MetadataMgr starts.
  const Vehicle::Clock::time_point& StartEnd() const { return startEnd_; }
  void SetStartEnd(Vehicle::Clock::time_point end) { startEnd_ = end; }

 private:
  static void Handler(LinxIpc* ipc, void* self);
  void Take(News news, const std::string& process, const std::string& text);
  void TakeStep(const std::string& process, const std::string& text);
  void TakeFullRun(const std::string& process, const std::string& text);
  void TakeStopped(const std::string& process, const std::string& text);
  void TakeSilent(const std::string& process, const std::string& text);
  bool IsWorthALine(const std::string& process) const;

  const RunOptions& options_;
  Vehicle& vehicle_;
  Report& report_;
  const FullRun fullRun_;
  Vehicle::Clock::time_point startEnd_;
  bool ready_ = false;
  bool allStopped_ = false;
  unsigned int othersStopped_ = 0;
};

}  // namespace bench
