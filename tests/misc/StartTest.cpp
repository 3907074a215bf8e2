// The start that every process shares, between real endpoints: the messages to the state manager, the calls
// of the managed object, and the log. tests/metadatamgr shows how MetadataMgr starts.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "Misc/ProcessInitializer.h"
#include "support/Hex.h"
#include "support/IpcTest.h"
#include "support/LogText.h"

std::string gStateMgrName = "StateMgr";

namespace {

constexpr unsigned int kSubscribe = 13233, kFullRun = 13235, kRestarted = 13236;
constexpr unsigned int kDied = LinxIpc::kProcessDiedNotice, kQuit = LinxIpc::kShutdownNotice;

struct Arrival {
  unsigned int type;
  std::string payload = {};  // hex
};

// The fixture is also the managed object; it records the calls.
class StartTest : public testing::Test {
 public:
  bool PreInit(LinxIpc& ipc) {
    Send(arrivals_);
    return preInit_(ipc);
  }
  bool SubscribeToServers(LinxIpc& /*ipc*/, bool flag) {
    asked_.emplace_back(flag ? "subscribe true" : "subscribe false");
    return subscribes_;
  }
  void Shutdown(LinxIpc& /*ipc*/) { asked_.push_back("shutdown, told " + std::to_string(Heard().size())); }
  void ProcessDied(LinxIpc& /*ipc*/, e_Process process) {
    asked_.push_back("died " + std::to_string(process));
  }
  void ProcessRestarted(LinxIpc& /*ipc*/, e_Process process) {
    asked_.push_back("restarted " + std::to_string(process));
  }

 protected:
  StartTest() { EXPECT_EQ(stateMgr_.Init(), 0); }
  ~StartTest() override { unsetenv("RUN_WITHOUT_STATEMGR"); }

  void Send(const std::vector<Arrival>& arrivals) {
    for (const Arrival& arrival : arrivals) {
      ASSERT_EQ(Tell(stateMgr_, "MetadataMgr", arrival.type, FromHex(arrival.payload), true), 0);
    }
  }
  // Starts the process; the arrivals come as soon as its endpoint is there.
  bool Init(const std::vector<Arrival>& arrivals, unsigned int logLevel = 1 | 2 | 16) {
    arrivals_ = arrivals;
    return initializer_.Init("Process", logLevel);
  }
  // "TYPE PAYLOAD" of each message to the state manager since the last call.
  Lines Heard() {
    Lines heard;
    for (Got got = Next(stateMgr_, 50); got.result == 0; got = Next(stateMgr_, 50)) {
      heard.push_back(std::to_string(got.type) + " " + ToHex(got.payload));
    }
    return heard;
  }
  // The start's log lines, without the name of their source.
  Lines Log() const {
    Lines lines = LogText(log_.Text());
    const std::string name = "Common/Misc/ProcessInitializer: ";
    std::erase_if(lines, [&](const std::string& line) { return line.find(name) == std::string::npos; });
    for (std::string& line : lines) line.erase(line.find(name), name.size());
    return lines;
  }

  IpcDir directory_;
  LogCapture log_;
  LinxIpc stateMgr_{"StateMgr"};
  std::function<bool(LinxIpc&)> preInit_ = [](LinxIpc&) { return true; };
  bool subscribes_ = true;
  Lines asked_;
  ProcessInitializer<StartTest> initializer_{*this, e_Process_MetadataMgr};

 private:
  std::vector<Arrival> arrivals_;
};

TEST_F(StartTest, PassesTheFlagOnAndAnswersEachSubscribeRequest) {
  EXPECT_TRUE(Init({{kSubscribe, "00"}, {kSubscribe, "80ff"}, {9, "01"}, {kFullRun}}, 255));
  EXPECT_EQ(asked_, (Lines{"subscribe false", "subscribe true"}));
  EXPECT_EQ(Heard(), (Lines{"13232 00 00 00 13", "13234 01", "13234 01"}));
  EXPECT_EQ(Log().at(8), "128 ProcessInitializer::WaitForStateMgr - Received a message - 9");
}

TEST_F(StartTest, FailsOnASubscribeRequestWithoutPayload) {
  EXPECT_FALSE(Init({{kSubscribe}, {kFullRun}}));
  EXPECT_EQ(Log(), Lines{"2 StateMgr::WaitForStateMgr NULL MESSAGE"});
  EXPECT_EQ(Heard(), Lines{"13232 00 00 00 13"});
}

// The managed object received the quit notice before the wait; later messages are still served.
TEST_F(StartTest, AnswersASubscribeRequestDuringAShutdownWithFailure) {
  preInit_ = [](LinxIpc& ipc) { return Next(ipc).result == ESHUTDOWN; };
  EXPECT_FALSE(Init({{kQuit}, {kSubscribe, "01"}, {kFullRun}}));
  EXPECT_EQ(asked_, Lines{"subscribe true"});
  EXPECT_EQ(Log(), Lines{"16 WaitForStateMgr - shutdown requested."});
  EXPECT_EQ(Heard(), (Lines{"13232 00 00 00 13", "13234 00"}));
}

TEST_F(StartTest, DoesNotRunWhenToldToDuringAShutdown) {
  preInit_ = [](LinxIpc& ipc) { return Next(ipc).result == ESHUTDOWN; };
  EXPECT_FALSE(Init({{kQuit}, {kFullRun}}));
  EXPECT_EQ(Log(), Lines{"16 WaitForStateMgr - shutdown requested."});
}

TEST_F(StartTest, SaysThatItCannotTellOfItsFailure) {
  preInit_ = [](LinxIpc&) {
    std::filesystem::remove(IpcDir::File("StateMgr"));
    return false;
  };
  EXPECT_FALSE(Init({}));
  EXPECT_EQ(Log(), (Lines{"1 Init: PreInit failed", "1 Error sending notify to StateMgr"}));
}

TEST_F(StartTest, FailsInSilenceWithoutStateManager) {
  setenv("RUN_WITHOUT_STATEMGR", "", 1);
  subscribes_ = false;
  EXPECT_FALSE(Init({}));
  EXPECT_EQ(asked_, Lines{"subscribe false"});
  preInit_ = [](LinxIpc&) { return false; };
  EXPECT_FALSE(initializer_.Init("Process", 0));
  EXPECT_EQ(Heard(), Lines{});
}

TEST_F(StartTest, QuitShutsDownThenAnswersAndHearsOfNobodyElse) {
  EXPECT_TRUE(Init({{kFullRun}}));
  EXPECT_EQ(Heard(), Lines{"13232 00 00 00 13"});
  const std::vector<Arrival> arrivals = {{kDied, "0000000c"}, {kRestarted, "0000000d"}, {kQuit},
                                         {kDied, "0000000e"}, {kRestarted, "0000000f"}, {kQuit}};
  Send(arrivals);
  for (std::size_t i = 0; i < arrivals.size(); ++i) (void)Next(initializer_.Ipc());
  EXPECT_EQ(asked_, (Lines{"died 12", "restarted 13", "shutdown, told 0"}));
  EXPECT_EQ(Heard(), Lines{"13239 "});
}

}  // namespace
