#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "support/Eventually.h"
#include "support/ListeningSocket.h"
#include "support/LogCapture.h"
#include "support/TempDir.h"
#include "system/Watchdog.h"

namespace {

using Notices = std::vector<std::string>;

class WatchdogTest : public testing::Test {
 protected:
  WatchdogTest() { ListenAt(directory_.Path("notify")); }
  ~WatchdogTest() override { unsetenv("NOTIFY_SOCKET"); }

  void ListenAt(const std::string& name) {
    setenv("NOTIFY_SOCKET", name.c_str(), 1);
    manager_.emplace(name);
  }
  void Pet(int times) {
    for (int i = 0; i < times; ++i) watchdog_.PetWatchdog();
  }
  Notices Heard() const { return manager_->Heard(); }

  // Pets until a notice arrives.
  Notices PetUntilHeard() {
    Notices heard;
    (void)Eventually([&] {
      Pet(1);
      return !(heard = Heard()).empty();
    });
    return heard;
  }

  static constexpr unsigned int kLong = 3600;  // seconds; a quarter of it never passes in a test

  TempDir directory_;
  std::optional<ListeningSocket> manager_;
  Watchdog watchdog_{e_Process_MetadataMgr, e_ThreadIds_Main};
};

TEST_F(WatchdogTest, SaysReadyWithTheFirstPetAndStoppingAtTheEnd) {
  Pet(1);
  ASSERT_TRUE(watchdog_.Subscribe(kLong));
  EXPECT_EQ(Heard(), Notices{});
  Pet(1000);
  ASSERT_TRUE(watchdog_.Subscribe(kLong));
  Pet(10);
  watchdog_.Unsubscribe();
  Pet(10);
  watchdog_.Unsubscribe();
  EXPECT_EQ(Heard(), (Notices{"READY=1", "READY=1", "STOPPING=1"})) << "it began anew";
}

TEST_F(WatchdogTest, SocketMayBeAbstractAndItsNameOfFullLength) {
  const std::string abstract = "@mm-watchdog-test-" + std::to_string(getpid());
  const std::string path = directory_.Path("");
  for (const std::string& name : {abstract, path + std::string(107 - path.size(), 'p'),
                                  abstract + std::string(108 - abstract.size(), 'a')}) {
    ListenAt(name);
    ASSERT_TRUE(watchdog_.Subscribe(kLong)) << name;
    Pet(1);
    EXPECT_EQ(Heard(), Notices{"READY=1"}) << name;
  }
}

TEST_F(WatchdogTest, MalformedSocketNameOrPeriodFailsAndChangesNothing) {
  ASSERT_TRUE(watchdog_.Subscribe(kLong));
  Pet(1);
  EXPECT_FALSE(watchdog_.Subscribe(0));
  for (const std::string& name :
       {std::string("notify"), std::string("@"), std::string("/"), "/" + std::string(107, 'p'),
        "@" + std::string(108, 'a'), std::string(100000, '/')}) {
    setenv("NOTIFY_SOCKET", name.c_str(), 1);
    const LogCapture log;
    EXPECT_FALSE(watchdog_.Subscribe(kLong)) << name.substr(0, 200);
    EXPECT_EQ(log.Lines("] 1 Watchdog:"), 1);
  }
  Pet(10);
  watchdog_.Unsubscribe();
  EXPECT_EQ(Heard(), (Notices{"READY=1", "STOPPING=1"}));
}

TEST_F(WatchdogTest, ManagerThatComesLaterHearsReady) {
  manager_.reset();
  ASSERT_TRUE(watchdog_.Subscribe(kLong));
  Pet(10);
  ListenAt(directory_.Path("notify"));
  EXPECT_EQ(PetUntilHeard(), Notices{"READY=1"});
  EXPECT_EQ(Heard(), Notices{});
}

TEST_F(WatchdogTest, FullSocketNeverBlocksAndReadyIsSaidLater) {
  constexpr std::size_t kMore = 100000;  // more than any socket queues
  for (std::size_t i = 0; i < kMore; ++i) {
    ASSERT_TRUE(watchdog_.Subscribe(kLong));
    Pet(1);
  }
  const std::size_t taken = Heard().size();
  ASSERT_GT(taken, 0U);
  ASSERT_LT(taken, kMore);
  EXPECT_EQ(PetUntilHeard(), Notices{"READY=1"});
}

}  // namespace
