#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

// Runs `scenario` in a process of its own and gives its id. Expectations in it count at
// JoinChild. A scenario that blocks is ended after `seconds` and fails.
template <typename Scenario>
pid_t StartChild(const Scenario& scenario, unsigned int seconds = 20) {
  const pid_t child = fork();
  if (child != 0) return child;
  alarm(seconds);
  scenario();
  _exit(testing::Test::HasFailure() ? 1 : 0);
}

inline void JoinChild(pid_t child) {
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
  EXPECT_EQ(WEXITSTATUS(status), 0) << "see the failures above";
}
