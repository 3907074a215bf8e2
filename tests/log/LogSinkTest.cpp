#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include "LogSink.h"
#include "support/ListeningSocket.h"
#include "support/LogText.h"
#include "support/TempDir.h"

namespace {

TEST(LogSink, ALineIsOneDatagramAndIsRefusedAtOnceByAFullQueue) {
  const TempDir directory;
  std::optional<ListeningSocket> daemon(directory.Path("log"));
  LogSink sink(directory.Path("log"));
  EXPECT_TRUE(sink.Connected());
  EXPECT_TRUE(sink.Write("one"));
  EXPECT_TRUE(sink.Write("two"));
  EXPECT_EQ(daemon->Heard(), (Lines{"one", "two"}));
  std::size_t taken = 0;
  while (taken < 1000000 && sink.Write("line")) ++taken;
  EXPECT_EQ(daemon->Heard().size(), taken);
  daemon.reset();
  daemon.emplace(directory.Path("log"));
  EXPECT_TRUE(sink.Write("after its restart"));
  EXPECT_EQ(daemon->Heard(), Lines{"after its restart"});
}

TEST(LogSink, MissingDaemonIsLookedForOnceASecond) {
  using Clock = std::chrono::steady_clock;
  const TempDir directory;
  LogSink sink(directory.Path("log"));
  EXPECT_FALSE(sink.Connected());
  const auto firstTry = Clock::now();
  EXPECT_FALSE(sink.Write("lost"));
  const ListeningSocket daemon(directory.Path("log"));
  while (!sink.Write("found")) ASSERT_LT(Clock::now(), firstTry + std::chrono::seconds(30));
  EXPECT_GE(Clock::now(), firstTry + std::chrono::milliseconds(999));
  EXPECT_EQ(daemon.Heard(), Lines{"found"});
}

TEST(LogSink, PathThatNamesNoSocketIsNotConnected) {
  const TempDir directory;
  for (const std::string& path : {directory.Write("file", ""), directory.Path(std::string(200, 'p'))}) {
    LogSink sink(path);
    EXPECT_FALSE(sink.Connected()) << path;
    EXPECT_FALSE(sink.Write("line")) << path;
  }
}

}  // namespace
