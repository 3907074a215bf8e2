#include "Frame.h"

std::string gStateMgrName;

namespace {

// Before the first line of the whole program.
const int kLogTarget = setenv("LOG_TARGET", "stderr", 1);

constexpr unsigned int kTroubleMasks = 1 | 2 | 16;

const Arrival kSubscribe{0, 13233, "01"};
const Arrival kFullRun{0, 13235, ""};

using StartTest = Frame;

TEST_F(StartTest, DoesEverythingInOrder) {
  script.arrivals = {kSubscribe, kFullRun};
  EXPECT_TRUE(Init());
  EXPECT_EQ(script.happened,
            (Lines{"PreInit", "send StateMgr 13232 00 00 00 13", "register shutdown", "register process died",
                   "register 13236", "register 1873", "register 1872", "register 13233", "register 13235",
                   "SubscribeToServers true", "send StateMgr 13234 01"}));
  EXPECT_EQ(Log(), (Lines{"128 ProcessInitializer::SetupIpc - Successfully initialized IPC ",
                          "128 Notify to StateMgr", "128 IgnoreHandler",
                          "128 WaitForStateMgr: Got a StateMgrProcessMsg_Subscribe", "128 Notify to StateMgr",
                          "128 IgnoreHandler", "128 WaitForStateMgr: Got a StateMgrProcessMsg_FullRun"}));
}

TEST_F(StartTest, PassesTheFlagOnAndAnswersEachSubscribeRequest) {
  script.arrivals = {{0, 13233, "00"}, {0, 13233, "80ff"}, {0, 9, "01"}, kFullRun};
  EXPECT_TRUE(Init());
  EXPECT_EQ(Happened("Subscribe"), (Lines{"SubscribeToServers false", "SubscribeToServers true"}));
  EXPECT_EQ(Happened("send StateMgr 13234"), (Lines{"send StateMgr 13234 01", "send StateMgr 13234 01"}));
  EXPECT_EQ(Log()[8], "128 ProcessInitializer::WaitForStateMgr - Received a message - 9");
}

TEST_F(StartTest, WithoutStateManagerSubscribesAtOnceAndSendsNothing) {
  WithoutStateMgr();
  EXPECT_TRUE(Init());
  EXPECT_EQ(script.happened, (Lines{"PreInit", "register shutdown", "register process died", "register 13236",
                                    "register 1873", "register 1872", "SubscribeToServers false"}));
}

TEST_F(StartTest, WithoutStateManagerFailsInSilence) {
  WithoutStateMgr();
  managed_.subscribes = false;
  EXPECT_FALSE(Init());
  managed_.ready = false;
  EXPECT_FALSE(Init());
  EXPECT_EQ(Happened("send"), Lines{});
}

struct Failure {
  const char* name;
  Script script;
  Lines sent;  // to the state manager
  Lines log;   // masks 1, 2 and 16
  bool ready = true;
  bool subscribes = true;
};

const char* const kStarted = "send StateMgr 13232 00 00 00 13";
const char* const kFailedStart = "send StateMgr 13244 00 00 00 13";
const char* const kSubscribed = "send StateMgr 13234 01";
const char* const kNotSubscribed = "send StateMgr 13234 00";

const char* const kNoEndpoint = "1 ProcessInitializer::SetupIpc - Error initializing the Server";
const char* const kSetupFailed = "1 Init: Server setup failed";
const char* const kPreInitFailed = "1 Init: PreInit failed";
const char* const kCannotSend = "1 Error sending notify to StateMgr";
const char* const kNotStarted = "1 ProcessInitializer::SetupIpc - Error sending message to StateMgr";
const char* const kNotAnnounced = "1 Init: Notification to StateMgr that we've started failed";
const char* const kShutdown = "16 WaitForStateMgr - shutdown requested.";
const char* const kNotAnswered = "1 ProcessInitializer::WaitForStateMgr - Failed RespondToSubscribed";
const char* const kSubscribeFailed = "1 ProcessInitializer::WaitForStateMgr - Failed Subscribe";
const char* const kNoNotice = "1 ProcessInitializer::NotifyFailedStart - Error allocating request";
const char* const kNoStarted = "1 ProcessInitializer::ProcessStarted - Error allocating request";
const char* const kReceiveError = "1 ProcessInitializer::WaitForStateMgr - Receive error 5";
const char* const kNoPayload = "2 StateMgr::WaitForStateMgr NULL MESSAGE";
const char* const kNoSubscribed = "1 ProcessInitializer::RespondToSubscribed - Error allocating request";
const char* const kEnd = "1 ProcessInitializer::WaitForStateMgr - Receive error 71";

const Failure kFailures[] = {
    {"NoEndpoint", {kAnyNumber, {}}, {}, {kNoEndpoint, kSetupFailed}},
    {"NotReady", {}, {kFailedStart}, {kPreInitFailed}, false},
    {"NotReadyAndCannotAllocateNotice", {0, {}, 13244}, {}, {kPreInitFailed, kNoNotice}, false},
    {"NotReadyAndCannotSendNotice", {0, {}, 0, 13244}, {}, {kPreInitFailed, kCannotSend}, false},
    {"CannotAllocateStarted", {0, {}, 13232}, {}, {kNoStarted, kNotStarted, kNotAnnounced}},
    {"CannotSendStarted", {0, {}, 0, 13232}, {}, {kCannotSend, kNotStarted, kNotAnnounced}},
    {"ReceiveError", {0, {{kAnyNumber, 0, ""}, kFullRun}}, {kStarted}, {kReceiveError}},
    {"SubscribeWithoutPayload", {0, {{0, 13233, ""}, kFullRun}}, {kStarted}, {kNoPayload}},
    {"SubscriptionsFail",
     {0, {kSubscribe, kFullRun}},
     {kStarted, kNotSubscribed},
     {kSubscribeFailed},
     true,
     false},
    {"SubscriptionsFailAndCannotSay",
     {0, {kSubscribe, kFullRun}, 0, 13234},
     {kStarted},
     {kSubscribeFailed, kCannotSend, kNotAnswered},
     true,
     false},
    {"CannotAllocateSubscribed",
     {0, {kSubscribe, kFullRun}, 13234},
     {kStarted},
     {kNoSubscribed, kNotAnswered}},
    {"CannotSendSubscribed", {0, {kSubscribe, kFullRun}, 0, 13234}, {kStarted}, {kCannotSend, kNotAnswered}},
    {"ShutdownWithSubscribe",
     {0, {{ESHUTDOWN, 13233, "01"}, kFullRun}},
     {kStarted, kNotSubscribed},
     {kShutdown}},
    {"ShutdownWithFullRun", {0, {kSubscribe, {ESHUTDOWN, 13235, ""}}}, {kStarted, kSubscribed}, {kShutdown}},
    {"ShutdownWithSomethingElse", {0, {{ESHUTDOWN, 9, ""}, kFullRun}}, {kStarted}, {kShutdown}},
    {"NeverToldToRun", {0, {kSubscribe}}, {kStarted, kSubscribed}, {kEnd}},
};

class FailedStartTest : public Frame, public testing::WithParamInterface<Failure> {};

TEST_P(FailedStartTest, TellsWhy) {
  const Failure& failure = GetParam();
  script = failure.script;
  managed_.ready = failure.ready;
  managed_.subscribes = failure.subscribes;
  EXPECT_FALSE(Init(kTroubleMasks));
  EXPECT_EQ(Happened("send"), failure.sent);
  EXPECT_EQ(Log(), failure.log);
}

INSTANTIATE_TEST_SUITE_P(All, FailedStartTest, testing::ValuesIn(kFailures),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
