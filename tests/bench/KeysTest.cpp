// A replay on a terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include "BenchRun.h"
#include "support/Eventually.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class Keys : public testing::Test {
 protected:
  void SetUp() override {
    BenchRun first;
    first.Drive("0 input brakes on\n0.5 crash on\n5 input brakes off\n5.1 quit\n");
    ASSERT_EQ(first.Run({"--speed", "50"}), 0) << first.Output();
    recording_ = directory_.Write("metadata.000001.db", TextOfFile(first.Recording()));
    ASSERT_EQ(openpty(&keys_, &terminal_, nullptr, nullptr, nullptr), 0);
    bench_.UseTerminal(terminal_);
  }
  void TearDown() override {
    close(keys_);
    close(terminal_);
  }
  void Press(const std::string& keys) const {
    ASSERT_EQ(write(keys_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  bool IsAsBefore() const {
    termios mode{};
    return tcgetattr(terminal_, &mode) == 0 && (mode.c_lflag & ICANON) != 0 && (mode.c_lflag & ECHO) != 0;
  }

  TempDir directory_;
  std::string recording_;
  BenchRun bench_;
  int keys_ = -1;
  int terminal_ = -1;
};

TEST_F(Keys, PauseStepAndGoOn) {
  Press(" ");
  bench_.StartReplay(recording_);
  ASSERT_TRUE(bench_.Said("paused at 0 lines, 0 %\n")) << bench_.Output();
  Press("n");
  ASSERT_TRUE(bench_.Said("brakes: on\n")) << bench_.Output();
  EXPECT_EQ(bench_.Send({"ping"}), 0) << bench_.SendOutput();
  EXPECT_THAT(bench_.Output(), Not(HasSubstr("crash")));
  Press(".x");
  ASSERT_TRUE(bench_.Said("crash: detected\n")) << bench_.Output();
  EXPECT_FALSE(IsAsBefore());
  Press(" ");
  EXPECT_EQ(bench_.Finish(), 0) << bench_.Output();
  EXPECT_THAT(bench_.Output(), HasSubstr("goes on\n"));
  EXPECT_THAT(bench_.Output(), HasSubstr("Good: 3 of 3 lines"));
  EXPECT_TRUE(IsAsBefore());
}

// A pause takes no time of the drive, and moves no tick.
TEST_F(Keys, ChangeNoTicks) {
  bench_.StartReplay(recording_, {"--speed", "1"});
  ASSERT_TRUE(bench_.Said("keys: ")) << bench_.Output();
  Press("nnn ");
  EXPECT_EQ(bench_.Finish(), 0) << bench_.Output();
  const Ran diff = RunProgram({METADATA_PROGRAM, "diff", recording_, bench_.Recording()});
  EXPECT_EQ(diff.status, 0) << diff.out;
}

TEST_F(Keys, LeaveTheTerminalAsItWas) {
  // Not SIGSEGV: the sanitizers handle it.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT, SIGUSR1, SIGTSTP}) {
    SCOPED_TRACE(signal);
    BenchRun bench;
    bench.UseTerminal(terminal_);
    Press(" ");
    bench.StartReplay(recording_);
    ASSERT_TRUE(bench.Said("paused")) << bench.Output();
    EXPECT_FALSE(IsAsBefore());
    if (signal == SIGINT) {
      Press("\x03");
    } else {
      bench.Signal(signal);
    }
    EXPECT_TRUE(Eventually([&] { return IsAsBefore(); }));
    if (signal == SIGTSTP) {
      bench.Signal(SIGCONT);
      EXPECT_TRUE(Eventually([&] { return !IsAsBefore(); }));
      Press("\x03");
    }
    EXPECT_EQ(bench.Finish() > 128, signal != SIGINT && signal != SIGTERM && signal != SIGTSTP);
    EXPECT_TRUE(IsAsBefore());
  }
}

}  // namespace
