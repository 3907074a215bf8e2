#include "Frame.h"

namespace {

constexpr unsigned int kQuit = LinxIpc::kShutdownNotice;
constexpr unsigned int kDied = LinxIpc::kProcessDiedNotice;
constexpr unsigned int kRestarted = 13236;

// What control messages do that arrive while the process waits for the state manager.
class ControlTest : public Frame {
 protected:
  void Arrive(std::deque<Arrival> arrivals, unsigned int logLevel = 255) {
    script.arrivals = std::move(arrivals);
    script.arrivals.push_back({0, 13235, ""});
    (void)Init(logLevel);
  }
  bool Logged(const std::string& line) const {
    const Lines log = Log();
    return std::find(log.begin(), log.end(), line) != log.end();
  }
};

TEST_F(ControlTest, QuitFirstStopsListeningThenShutsDownThenAnswers) {
  Arrive({{ESHUTDOWN, kQuit, ""}});
  const Lines& happened = script.happened;
  EXPECT_EQ(Lines(happened.end() - 5, happened.end()),
            (Lines{"deregister process died", "deregister shutdown", "deregister 13236", "Shutdown",
                   "send StateMgr 13239"}));
  EXPECT_TRUE(Logged("128 Quit Requested"));
}

TEST_F(ControlTest, AfterQuitHearsOfNobodyElse) {
  Arrive({{0, kQuit, ""}, {0, kDied, "0000000c"}, {0, kRestarted, "0000000c"}, {0, kQuit, ""}});
  EXPECT_EQ(Happened("Process"), Lines{});
  EXPECT_EQ(Happened("Shutdown"), Lines{"Shutdown"});
}

TEST_F(ControlTest, QuitWhoseAnswerCannotBeAllocated) {
  script.cannotAllocate = 13239;
  Arrive({{0, kQuit, ""}}, kLogError);
  EXPECT_EQ(Log(), Lines{"1 ProcessInitializer::RespondToShutdown - Error allocating request"});
}

TEST_F(ControlTest, QuitWhoseAnswerCannotBeSent) {
  script.cannotSend = 13239;
  Arrive({{0, kQuit, ""}}, kLogError);
  EXPECT_EQ(Log(), Lines{"1 Error sending notify to StateMgr"});
}

TEST_F(ControlTest, QuitWithoutStateManagerAnswersNothing) {
  WithoutStateMgr();
  EXPECT_TRUE(Init());
  script.arrivals = {{ESHUTDOWN, kQuit, ""}};
  EXPECT_EQ(initializer_.Ipc().Receive(-1, 0, LinxIpc::emptyString, nullptr), ESHUTDOWN);
  EXPECT_EQ(script.happened.back(), "Shutdown");
}

TEST_F(ControlTest, NoticesNameTheProcess) {
  Arrive({{0, kDied, "0000000c"}, {0, kRestarted, "80000003ff"}});
  EXPECT_EQ(Happened("Process"), (Lines{"ProcessDied 12", "ProcessRestarted 2147483651"}));
  EXPECT_TRUE(Logged("128 Process Died"));
  EXPECT_TRUE(Logged("128 Process Restarted"));
}

TEST_F(ControlTest, NoticesWithoutAProcessAreDropped) {
  Arrive({{0, kDied, ""}, {0, kRestarted, ""}, {0, kDied, "00000c"}, {0, kRestarted, "0c"}}, kLogMalformed);
  EXPECT_EQ(Happened("Process"), Lines{});
  EXPECT_EQ(Log(), (Lines{"2 NULL MESSAGE", "2 NULL MESSAGE", "2 Process notice: payload is too short",
                          "2 Process notice: payload is too short"}));
}

TEST_F(ControlTest, LogLevelIsSetAndRead) {
  Arrive({{0, 1873, "ffffffff", "Tool"},
          {0, 1872, "000000c5", "Tool"},
          {0, 1873, "00", "Tool"},
          {0, 1873, "00000000", "Other"}});
  EXPECT_EQ(Happened("send Tool"), (Lines{"send Tool 1874 00 00 00 ff", "send Tool 1874 00 00 00 c5"}));
  EXPECT_EQ(Happened("send Other"), Lines{"send Other 1874 00 00 00 c5"});
  EXPECT_TRUE(Logged("64 HandleLogLevel: set mask c5"));
}

struct LogLevelFailure {
  const char* name;
  Script script;
  Lines log;
};

const LogLevelFailure kLogLevelFailures[] = {
    {"NoPayload", {0, {{0, 1873, ""}, {0, 1872, ""}}}, Lines(2, "2 HandleLogLevel: error, DataPtr is null")},
    {"ShortPayload",
     {0, {{0, 1873, "000000"}, {0, 1872, "ff"}}},
     Lines(2, "2 HandleLogLevel: payload is too short")},
    {"CannotAllocate", {0, {{0, 1873, "00000000"}}, 1874}, {"1 handleLogLevel: Cannot allocate response"}},
    {"CannotSend", {0, {{0, 1873, "00000000"}}, 0, 1874}, {"2 handleLogLevel: Failed to send response"}},
};

class LogLevelFailureTest : public ControlTest, public testing::WithParamInterface<LogLevelFailure> {};

TEST_P(LogLevelFailureTest, IsNotAnswered) {
  script = GetParam().script;
  Arrive(script.arrivals, kLogError | kLogMalformed);
  EXPECT_EQ(Happened("send StateMgr 1874"), Lines{});
  EXPECT_EQ(Log(), GetParam().log);
  EXPECT_EQ(LogClient::Instance().Level(), 3U);
}

INSTANTIATE_TEST_SUITE_P(All, LogLevelFailureTest, testing::ValuesIn(kLogLevelFailures),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
