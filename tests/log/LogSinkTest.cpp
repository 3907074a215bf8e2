#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include "LogSink.h"
#include "support/ListeningSocket.h"
#include "support/LogText.h"
#include "support/TempDir.h"

namespace {

class LogSinkTest : public testing::Test {
 protected:
  void StartDaemon() { daemon_.emplace(path_); }
  Lines Heard() { return daemon_->Heard(); }

  TempDir directory_;
  std::string path_ = directory_.Path("log");
  std::optional<ListeningSocket> daemon_;
};

TEST_F(LogSinkTest, ALineIsOneDatagramAlsoToADaemonThatRestarted) {
  StartDaemon();
  LogSink sink(path_);
  EXPECT_TRUE(sink.Connected());
  EXPECT_TRUE(sink.Write("one"));
  EXPECT_TRUE(sink.Write("two"));
  EXPECT_EQ(Heard(), (Lines{"one", "two"}));
  daemon_.reset();
  StartDaemon();
  EXPECT_TRUE(sink.Write("after"));
  EXPECT_EQ(Heard(), Lines{"after"});
}

TEST_F(LogSinkTest, FullQueueRefusesALineAtOnce) {
  StartDaemon();
  LogSink sink(path_);
  std::size_t taken = 0;
  while (taken < 1000000 && sink.Write("line")) ++taken;
  ASSERT_LT(taken, 1000000U);
  EXPECT_EQ(Heard().size(), taken);
  EXPECT_TRUE(sink.Write("line"));
}

TEST_F(LogSinkTest, MissingDaemonIsLookedForOnceASecond) {
  using Clock = std::chrono::steady_clock;
  LogSink sink(path_);
  EXPECT_FALSE(sink.Connected());
  const auto firstTry = Clock::now();
  EXPECT_FALSE(sink.Write("lost"));
  StartDaemon();
  while (!sink.Write("found")) ASSERT_LT(Clock::now(), firstTry + std::chrono::seconds(30));
  EXPECT_GE(Clock::now(), firstTry + std::chrono::milliseconds(999));
  EXPECT_EQ(Heard(), Lines{"found"});
}

TEST_F(LogSinkTest, PathThatNamesNoSocketIsNotConnected) {
  for (const std::string& path : {directory_.Write("file", ""), directory_.Path(std::string(200, 'p'))}) {
    LogSink sink(path);
    EXPECT_FALSE(sink.Connected()) << path;
    EXPECT_FALSE(sink.Write("line")) << path;
  }
}

}  // namespace
