#pragma once

#include "os/Descriptor.h"
#include "os/Errno.h"

namespace ipc {

// SIGTERM and SIGINT as input of the receive loop. Catch blocks them for the rest of the process and delivers
// them through a descriptor, so a second signal does not kill a process that is shutting down.
class ShutdownSignals {
 public:
  // A second call does nothing.
  os::Errno Catch();

  // Readable after a signal; -1 before Catch.
  int Fd() const { return signals_.Get(); }
  // Takes one signal; false when none waits.
  bool Take();

 private:
  os::Descriptor signals_;
};

}  // namespace ipc
