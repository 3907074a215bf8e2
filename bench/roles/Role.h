#pragma once

#include "Actions.h"
#include "ipc/LinxIpc.h"
#include "system/Process.h"

namespace bench {

// A process of the bench vehicle other than the state manager. It takes part in the start-up sequence as the
// real processes do, performs the commands that the director passes on, and ends with the state manager's
// quit notice. A derived class adds its actions, handlers and servers.
class Role {
 public:
  virtual ~Role() = default;

  // For the start-up sequence.
  bool PreInit(LinxIpc& ipc);
  virtual bool SubscribeToServers(LinxIpc& /*ipc*/, bool /*flag*/) { return true; }
  virtual void ProcessDied(LinxIpc& /*ipc*/, e_Process /*process*/) {}
  virtual void ProcessRestarted(LinxIpc& /*ipc*/, e_Process /*process*/) {}
  void Shutdown(LinxIpc& /*ipc*/) { stop_ = true; }

  bool Stopped() const { return stop_; }

  // For the loop: milliseconds that it may wait for messages (-1: for ever), and the work that is due then.
  virtual int WaitMs() const { return -1; }
  virtual void DoDueWork() {}

 protected:
  Role() = default;

  // The endpoint is up: register handlers, create servers.
  virtual void Prepare(LinxIpc& /*ipc*/) {}
  // Valid from Prepare on.
  LinxIpc& Ipc() { return *ipc_; }

  Actions actions_;  // filled by the role's constructor

 private:
  LinxIpc* ipc_ = nullptr;
  bool stop_ = false;
};

}  // namespace bench
