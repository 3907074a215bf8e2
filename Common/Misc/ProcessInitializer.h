#pragma once

#include <cerrno>
#include <string>

#include "Misc/MiscLog.h"
#include "Misc/ProcessControl.h"
#include "Misc/StateMgrNotices.h"
#include "ipc/LinxIpc.h"
#include "ipc/LinxServerNameList.h"
#include "system/Servers.h"

// The start-up sequence of every process of the system: opens the endpoint, prepares the managed object,
// notifies the state manager, installs the handlers of process control, and serves the state manager's
// subscribe requests until the full-run message.
//
// T has:
//   bool PreInit(LinxIpc&)                   once, after the endpoint is up; true: ready
//   bool SubscribeToServers(LinxIpc&, bool)  on each subscribe request; true: all subscribed
//   void Shutdown(LinxIpc&)                  on the quit notice
//   void ProcessDied(LinxIpc&, e_Process)
//   void ProcessRestarted(LinxIpc&, e_Process)
template <typename T>
class ProcessInitializer : private ProcessControl {
 public:
  // `managed` outlives this object. Constructs the endpoint under the process's own name.
  ProcessInitializer(T& managed, e_Process process)
      : managed_(managed), process_(process), ipc_(LinxServerNameList::Instance().Name(process)) {}

  // Runs the sequence; true when the process may enter its receive loop. Logs the reason for false.
  bool Init(const std::string& processName, unsigned int logLevel);

  // The endpoint. The process receives from it after Init returned true.
  LinxIpc& Ipc() { return ipc_; }

 private:
  using ProcessControl::NotifyStateMgr;
  bool NotifyStateMgr(IpcMessage& message) { return NotifyStateMgr(ipc_, message); }

  bool SetupServer();
  bool NotifyStarted();
  bool ProcessStarted();
  bool WaitForStateMgr();
  bool ServeSubscribe(bool ok);
  bool RespondToSubscribed(bool success);
  void NotifyFailedStart();

  static void QuitHandler(LinxIpc* ipc, void* managed);
  static void ProcessDiedHandler(LinxIpc* ipc, void* managed);
  static void ProcessRestartHandler(LinxIpc* ipc, void* managed);

  static constexpr const LogSource& log_ = kInitializerLog;

  T& managed_;
  const e_Process process_;
  LinxIpc ipc_;
};

#include "Misc/ProcessInitializer.inl"
