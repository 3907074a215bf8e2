#pragma once

#include <string>
#include <vector>

#include "Actions.h"
#include "BenchMessages.h"
#include "Publisher.h"
#include "ipc/LinxIpc.h"

// The state manager of the bench vehicle: leads the processes that it expects to full run, tells
// them of deaths and restarts, publishes its own events, and shuts all down. What happens it tells
// the director.
//
// When all have started, each is asked to subscribe to its servers; when all have, each is told
// full run. One that starts later, for the first time or again, goes the same way alone.
class StateMgr {
 public:
  explicit StateMgr(const Words& expected);

  // Runs until a shut-down is asked of it; returns the exit status.
  int Run();

 private:
  // In this order a process goes through them; one that failed or is absent holds the others up.
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

  // It has announced itself and is not on its way out.
  static bool Runs(const Process& process) {
    return process.phase >= Phase::kStarted && process.phase <= Phase::kFullRun;
  }
  // Null when there is none of that name.
  Process* Find(const std::string& name);
  // The sender of the current message where it is expected, else null.
  Process* Sender();
  void Started();
  void Advance();
  void Send(Process& process, unsigned int type, const std::string& payload, Phase next);
  Outcome TellOthers(unsigned int type, std::uint32_t number);

  void StopSystem(int timeoutMs);
  void Stop(std::vector<Process*> processes, int timeoutMs);

  void Tell(News news, const std::string& process, const std::string& text);
  void Fail(Process& process, const std::string& text);

  LinxIpc ipc_;
  Actions actions_;
  Publisher publisher_{e_Process_StateMgr};
  std::vector<Process> processes_;
  bool stop_ = false;
};
