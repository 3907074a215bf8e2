#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "support/Child.h"

// Runs `scenario` in a process whose standard error is `fd` and which has not logged
// yet: there is one LogClient in a process. Expectations in it count; one that blocks is ended.
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
