// The installed process on the bench, with a stand-in for the service manager. The process's clock runs five
// times as fast as ours.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "Installation.h"
#include "bench/BenchRun.h"
#include "support/Eventually.h"
#include "support/ListeningSocket.h"

namespace {

using Notices = std::vector<std::string>;
using std::chrono::milliseconds;

constexpr int kSpeed = 5;

class ServiceTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(installation_.Problem(), "");
    const std::string start = installation_.Unit("ExecStart");
    ASSERT_EQ(start, "/usr/sbin/MetadataMgr");
    watchdog_ = milliseconds(std::stoi(installation_.Unit("WatchdogSec")) * 1000 / kSpeed);
    directory_.Write("service",
                     "#!/bin/sh\nexport LD_PRELOAD=" SLOW_DISK " NOTIFY_SOCKET=" + directory_.Path("notify") +
                         " STALL=" + stall_ + " SPEED=" + std::to_string(kSpeed) + "\nexec " +
                         installation_.Path(start) + "\n");
    std::filesystem::permissions(directory_.Path("service"), std::filesystem::perms::owner_all);
  }

  void Start(const std::string& drive) {
    bench_.Drive(drive);
    bench_.Start({"--program", directory_.Path("service")});
  }
  // Whether the next notice, in the time in which the service manager wants one, is this.
  testing::AssertionResult Hears(const std::string& notice) {
    (void)Eventually([&] { return !Heard().empty(); }, watchdog_);
    if (heard_.empty() || heard_.front() != notice) {
      return testing::AssertionFailure() << testing::PrintToString(heard_) << "\n"
                                         << bench_.Log("MetadataMgr");
    }
    heard_.erase(heard_.begin());
    return testing::AssertionSuccess();
  }
  // What was heard and is not yet taken.
  Notices& Heard() {
    for (std::string& notice : manager_.Heard()) heard_.push_back(std::move(notice));
    return heard_;
  }

  const Installation installation_;
  const TempDir directory_;
  const std::string stall_ = directory_.Path("stall");
  const ListeningSocket manager_{directory_.Path("notify")};
  milliseconds watchdog_{};
  Notices heard_;
  BenchRun bench_;
};

TEST_F(ServiceTest, SaysReadyAndAliveAndStoppingAndNothingAsLongAsItsLoopHangs) {
  Start("0 gps rate 5\n1000 quit\n");
  ASSERT_TRUE(bench_.Said("MetadataMgr told full run")) << bench_.Output();
  EXPECT_TRUE(Hears("READY=1"));
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(Hears("WATCHDOG=1"));
  directory_.Write("stall", "");
  ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(stall_ + ".reached"); }));
  Heard().clear();
  EXPECT_FALSE(Eventually([&] { return !Heard().empty(); }, watchdog_)) << "hung, and said it lives";
  std::filesystem::remove(stall_);
  EXPECT_TRUE(Hears("WATCHDOG=1"));
  EXPECT_EQ(bench_.Send({"quit"}), 0) << bench_.SendOutput();
  EXPECT_EQ(bench_.Finish(), 0) << bench_.Output();
  std::erase(Heard(), "WATCHDOG=1");
  EXPECT_EQ(heard_, Notices{"STOPPING=1"});
}

// A server that answers too late ends the start.
TEST_F(ServiceTest, IsNeverReadyWithoutFullRun) {
  Start("before late GpsHal 4000\n0 quit\n");
  EXPECT_EQ(bench_.Finish(), 1);
  EXPECT_NE(bench_.Output().find("MetadataMgr could not subscribe"), std::string::npos) << bench_.Output();
  EXPECT_EQ(Heard(), Notices{});
}

}  // namespace
