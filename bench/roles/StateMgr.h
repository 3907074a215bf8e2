#pragma once

#include <string>
#include <vector>

#include "Actions.h"
#include "BenchMessages.h"
#include "Publisher.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The state manager of the bench vehicle: leads the expected processes to full run, notifies them of deaths
// and restarts, publishes its own events, shuts all processes down, and reports to the director.
//
// When all processes have started, it asks each to subscribe to its servers. When all have subscribed, it
// sends full run to each. A process that starts or restarts later does the same steps alone.
class StateMgr {
 public:
  explicit StateMgr(const Words& expected);

  // Runs until the quit notice. Returns the exit status.
  int Run();

 private:
  // The order of the phases matters. A failed or absent process keeps the others waiting.
  enum class Phase { kFailed, kAbsent, kStarted, kSubscribing, kSubscribed, kFullRun, kStopped, kDead };
  struct Process {
    std::string name;
    Phase phase = Phase::kAbsent;
  };

  static void StartedHandler(LinxIpc* ipc, void* self);
  static void SubscribedHandler(LinxIpc* ipc, void* self);
  static void FailedStartHandler(LinxIpc* ipc, void* self);
  static void DiedHandler(LinxIpc* ipc, void* self);
  static void StopSystemHandler(LinxIpc* ipc, void* self);
  static void QuitHandler(LinxIpc* ipc, void* self);

  // Whether the process has announced itself and is not shutting down.
  static bool Runs(const Process& process) {
    return process.phase >= Phase::kStarted && process.phase <= Phase::kFullRun;
  }
  // Null when no process has that name.
  Process* Find(const std::string& name);
  // The sender of the current message. Null, and logged, when the sender is not expected.
  Process* Sender();
  void Started();
  void Advance();
  void Send(Process& process, unsigned int type, const std::string& payload, Phase next);
  Outcome TellOthers(unsigned int type, std::uint32_t number);

  void StopSystem(int timeoutMs);

  void Tell(News news, const std::string& process, const std::string& text);
  void Fail(Process& process, const std::string& text);

  LinxIpc ipc_;
  Actions actions_;
  Publisher publisher_{e_Process_StateMgr};
  std::vector<Process> processes_;
  bool stop_ = false;
};

}  // namespace bench
