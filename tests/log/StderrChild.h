#pragma once

#include <unistd.h>

#include <cstdlib>

#include "support/ChildProcess.h"

// Runs `scenario` in a process whose standard error is `fd` (-1: closed) and which has not logged
// yet: there is one LogClient in a process.
template <typename Scenario>
void WithStderr(int fd, const Scenario& scenario) {
  JoinChild(StartChild([fd, &scenario] {
    setenv("LOG_TARGET", "stderr", 1);
    if (fd < 0) {
      close(STDERR_FILENO);
    } else {
      dup2(fd, STDERR_FILENO);
    }
    scenario();
  }));
}
