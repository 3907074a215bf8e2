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
};

TEST_F(ControlTest, QuitFirstStopsListeningThenShutsDownThenAnswers) {
  Arrive({{ESHUTDOWN, kQuit, ""}});
  const Lines& happened = script.happened;
  EXPECT_EQ(Lines(happened.end() - 5, happened.end()),
            (Lines{"deregister process died", "deregister shutdown", "deregister 13236", "Shutdown",
                   "send StateMgr 13239"}));
}

TEST_F(ControlTest, AfterQuitHearsOfNobodyElse) {
  Arrive({{0, kQuit, ""}, {0, kDied, "0000000c"}, {0, kRestarted, "0000000c"}, {0, kQuit, ""}});
  EXPECT_EQ(Happened("Process"), Lines{});
  EXPECT_EQ(Happened("Shutdown"), Lines{"Shutdown"});
}

TEST_F(ControlTest, QuitWithoutStateManagerAnswersNothing) {
  WithoutStateMgr();
  EXPECT_TRUE(Init());
  script.arrivals = {{ESHUTDOWN, kQuit, ""}};
  EXPECT_EQ(initializer_.Ipc().Receive(-1, 0, LinxIpc::emptyString, nullptr), ESHUTDOWN);
  EXPECT_EQ(script.happened.back(), "Shutdown");
}

// Answers that cannot be allocated or sent.
const struct {
  Script script;
  const char* log;  // masks 1 and 2
} kFailures[] = {
    {{0, {{0, kQuit, ""}}, 13239}, "1 ProcessInitializer::RespondToShutdown - Error allocating request"},
    {{0, {{0, kQuit, ""}}, 0, 13239}, "1 Error sending notify to StateMgr"},
    {{0, {{0, 1873, "00000000"}}, 1874}, "1 handleLogLevel: Cannot allocate response"},
    {{0, {{0, 1872, "00000003"}}, 0, 1874}, "2 handleLogLevel: Failed to send response"},
};

TEST_F(ControlTest, AnswersThatFailAreLogged) {
  for (const auto& failure : kFailures) {
    script = failure.script;
    Arrive(script.arrivals, kLogError | kLogMalformed);
    EXPECT_EQ(Log(), Lines{failure.log});
  }
}

}  // namespace
