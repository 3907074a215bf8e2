#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "support/Child.h"

// Runs `scenario` in a new process with `fd` as standard error, because a process has only one LogClient.
// Failed expectations fail the test. A scenario that blocks is killed.
template <typename Scenario>
void WithStderr(int fd, const Scenario& scenario) {
  Child child([fd, &scenario] {
    setenv("LOG_TARGET", "stderr", 1);
    dup2(fd, STDERR_FILENO);
    scenario();
    return testing::Test::HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(child.Wait(), 0) << "see the failures above";
}
