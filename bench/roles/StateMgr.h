#pragma once

#include <string>
#include <vector>

#include "Actions.h"
#include "BenchMessages.h"
#include "Publisher.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The state manager of the bench vehicle: leads the processes that it expects to full run, tells them of
// deaths and restarts, publishes its own events, shuts all down, and reports to the director.
//
// When all processes have started, each is asked to subscribe to its servers; when all have subscribed, each
// is told full run. A process that starts later, for the first time or again, goes the same way alone.
class StateMgr {
 public:
  explicit StateMgr(const Words& expected);

  // Runs until it is asked to shut down; returns the exit status.
  int Run();

 private:
  // A process goes through them in this order. A failed or absent process holds the others up.
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

  // The process has announced itself and is not shutting down.
  static bool Runs(const Process& process) {
    return process.phase >= Phase::kStarted && process.phase <= Phase::kFullRun;
  }
  // Null when no process has that name.
  Process* Find(const std::string& name);
  // The sender of the current message; null, and logged, when it is not expected.
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
