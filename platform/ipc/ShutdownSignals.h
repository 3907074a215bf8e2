#pragma once

#include "os/Descriptor.h"
#include "os/Errno.h"

namespace ipc {

// SIGTERM and SIGINT as input of the receive loop. Once caught they are blocked to the end of the process and
// arrive on a descriptor: a second one never ends a process that is closing down.
class ShutdownSignals {
 public:
  // May be called again without effect.
  os::Errno Catch();

  // Readable when a signal came; -1 before Catch.
  int Fd() const { return signals_.Get(); }
  // Takes one signal; false when none came.
  bool Take();

 private:
  os::Descriptor signals_;
};

}  // namespace ipc
