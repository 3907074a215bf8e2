#pragma once

#include "Actions.h"
#include "ipc/LinxIpc.h"
#include "system/Servers.h"

namespace bench {

// A process of the bench vehicle, except the state manager. It follows the start-up sequence of the real
// processes, performs the director's commands, and ends at the state manager's quit notice. A derived class
// adds actions, handlers and servers.
class Role {
 public:
  virtual ~Role() = default;

  // Called by the start-up sequence.
  bool PreInit(LinxIpc& ipc);
  virtual bool SubscribeToServers(LinxIpc& /*ipc*/, bool /*flag*/) { return true; }
  virtual void ProcessDied(LinxIpc& /*ipc*/, e_Process /*process*/) {}
  virtual void ProcessRestarted(LinxIpc& /*ipc*/, e_Process /*process*/) {}
  void Shutdown(LinxIpc& /*ipc*/) { stop_ = true; }

  bool Stopped() const { return stop_; }

  // For the main loop: the maximum wait for messages in ms (-1: no limit), and the work that is due.
  virtual int WaitMs() const { return -1; }
  virtual void DoDueWork() {}

 protected:
  Role() = default;

  // Called when the endpoint is open: registers handlers, creates servers.
  virtual void Prepare(LinxIpc& /*ipc*/) {}
  // Valid from Prepare on.
  LinxIpc& Ipc() { return *ipc_; }

  Actions actions_;  // filled by the derived constructor

 private:
  LinxIpc* ipc_ = nullptr;
  bool stop_ = false;
};

}  // namespace bench
