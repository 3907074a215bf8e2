// Start-up and restart with the ten servers: who is asked in which order, what is reported, and
// what happens when one of them is switched off, floods, or dies and comes back.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "Events.h"
#include "FakeServers.h"
#include "ProcessState.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "support/IpcDir.h"
#include "system/SystemInformation.h"

namespace {

using Texts = std::vector<std::string>;

const Texts kAllAsked = {
    "ConfigMgr 10",   "ConfigMgr 7",    "ConfigMgr 11",   "ConfigMgr 12",   "ConfigMgr 13",  "Fpga 17",
    "GpsHal 1",       "StateMgr 1",     "StateMgr 2",     "StateMgr 3",     "StateMgr 4",    "RadarHal 1",
    "MicMgr 0",       "VideoMgr 0",     "VideoMgr 1",     "AccelHal 1",     "TempHal 0",     "ExternalMgr 16",
    "ExternalMgr 17", "ExternalMgr 18", "ExternalMgr 19", "ExternalMgr 20", "ExternalMgr 21"};
const Texts kConfigCalls = {"Vehicle unit  initial", "System device  initial",
                            "Department department  initial", "Officer officer  initial",
                            "RecordingSettings 30 0 initial"};
std::string HardwareAddress() {
  unsigned char mac[6] = {};
  SystemInformation::GetShortMacAddress(mac);
  return ToHex({reinterpret_cast<const char*>(mac), sizeof mac});
}
Texts FirstOutput(const char* serial) {
  return {"ShutdownDataAtStartup",
          "TimerTick 500",
          "Mac " + HardwareAddress() + " initial",
          "StateData 64 event 0",
          std::string("SerialNum ") + serial,
          "Configuration initial"};
}
const Texts kFirstOutput = FirstOutput("serial");
Texts Inputs(const char* siren, const char* tick) {
  Texts calls;
  for (const char* tag : {"53", "57", siren, "61", "63", "69"}) {
    calls.push_back(std::string("StateData ") + tag + " initial " + tick);
  }
  return calls;
}
const Texts kGpsCalls = {"GpsState 1 initial", "Gps 0 0 0 0 0 0 1 initial 102", "Speed 1 0 initial 102 0"};
const Texts kRadarCalls = {"RadarState 1 1 initial", "Radar 1 0 0 0 0 initial 104 0",
                           "Speed 2 0 initial 104 0"};
const Texts kMicCalls = {"MicPresent 1 1 initial 105", "MicState 1 0 initial 105"};
const Texts kVideoCalls = {"Camera 0 0 initial 106", "Camera 1 0 initial 106", "Camera 2 0 initial 106",
                           "Camera 3 0 initial 106", "StreamQuality 0 initial 107"};
const Texts kAccelCalls = {"StateData 67 event 108"};
const Texts kTempCalls = {"Temp 3 0 initial 109", "Temp 0 0 initial 109", "Temp 1 0 initial 109",
                          "Temp 2 0 initial 109"};
const Texts kFullState = {"WatchdogSubscribe 45", "FullState 1"};

Texts Joined(std::initializer_list<Texts> parts) {
  Texts all;
  for (const Texts& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

class SubscribeTest : public testing::Test {
 protected:
  SubscribeTest() {
    gMetadataDir = directory_.Beside("metadata");
    setenv("METADATA_SHM", "/metadata-subscribe-test", 1);
    setenv("MFG_FILE", directory_.Beside("serial").c_str(), 1);
    setenv("VERSION_FILE", "/nonexistent", 1);
    std::ofstream(directory_.Beside("serial")) << "serial";
    LogClient::Instance().Level(255 & ~kLogInfo);
  }
  ~SubscribeTest() override {
    for (const std::string& variable : set_) unsetenv(variable.c_str());
  }

  void Set(const char* variable) {
    setenv(variable, "", 1);
    set_.emplace_back(variable);
  }

  // Subscribes with servers that behave so.
  bool Subscribe(const std::map<std::string, Behaviour>& behaviours = {}) {
    ipc_.reset();
    gStoreInitialized = false;
    servers_.reset();
    servers_ = std::make_unique<FakeServers>(behaviours);
    manager_ = std::make_unique<MetadataMgr>();
    ipc_ = std::make_unique<LinxIpc>("MetadataMgr");
    EXPECT_EQ(ipc_->Init(), 0);
    StoreCalls().clear();
    gSystemTick = 500;
    const LogCapture capture;
    const bool subscribed = manager_->SubscribeToServers(*ipc_, false);
    errors_ = ErrorsOf(capture);
    return subscribed;
  }

  // The mask-1 lines.
  static Texts ErrorsOf(const LogCapture& capture) {
    Texts lines = LogText(capture.Text());
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("1 MetadataMgr: "); });
    for (std::string& line : lines) line.erase(0, std::string("1 MetadataMgr: ").size());
    return lines;
  }

  // Receives until nothing comes for a while.
  void Dispatch() {
    while (ipc_->Receive(200, 0, LinxIpc::emptyString, nullptr) == 0) {
    }
  }

  IpcDir directory_;
  Texts set_;
  std::unique_ptr<FakeServers> servers_;
  std::unique_ptr<MetadataMgr> manager_;  // outlives its endpoint
  std::unique_ptr<LinxIpc> ipc_;
  Texts errors_;
};

TEST_F(SubscribeTest, AsksAllServersInOrderAndReportsTheirValues) {
  EXPECT_TRUE(Subscribe());
  EXPECT_EQ(servers_->Asked(), kAllAsked);
  EXPECT_EQ(errors_, Texts{});
  EXPECT_EQ(StoreCalls(), Joined({kConfigCalls, kFirstOutput, Inputs("54", "101"), kGpsCalls, kRadarCalls,
                                  kMicCalls, kVideoCalls, kAccelCalls, kTempCalls, kFullState}));
}

TEST_F(SubscribeTest, ASecondTimeMakesNoSecondFirstOutput) {
  EXPECT_TRUE(Subscribe());
  StoreCalls().clear();
  EXPECT_TRUE(manager_->SubscribeToServers(*ipc_, true));
  EXPECT_EQ(StoreCalls(), Joined({kConfigCalls, Inputs("54", "101"), kGpsCalls, kRadarCalls, kMicCalls,
                                  kVideoCalls, kAccelCalls, kTempCalls, kFullState}));
}

TEST_F(SubscribeTest, WithoutATickTheFirstOutputWaits) {
  MetadataMgr manager;
  EXPECT_EQ(StoreCalls().back(), "Watchdog 19 0");
  const auto calls = [&](unsigned int tick) {
    StoreCalls().clear();
    gSystemTick = tick;
    manager.InitializeStore();
    return StoreCalls();
  };
  gStoreInitialized = false;
  std::filesystem::remove(directory_.Beside("serial"));
  const LogCapture capture;
  EXPECT_EQ(calls(0xFFFFFFFF), Texts{});
  EXPECT_EQ(calls(500), FirstOutput(""));
  EXPECT_EQ(calls(500), Texts{});
  EXPECT_EQ(LogText(capture.Text()),
            (Texts{"2 MetadataMgr: SystemTick not correct in InitializeStore",
                   "64 MetadataMgr: Starting first output to metadata files at system tick 500",
                   "64 MetadataMgr: finished first output to metadata files"}));
}

// ---- Switches

struct Switched {
  const char* variable;
  const char* server;
  Texts calls;  // in place of the server's
};

TEST_F(SubscribeTest, SwitchesLeaveOutTheirServer) {
  const Texts noInputs = Inputs("55", "0");
  const Switched rows[] = {
      {"NO_CONFIGMGR", "ConfigMgr", {}},
      {"NO_FPGA", "Fpga", noInputs},
      {"NO_GPSHAL", "GpsHal", {"GpsState 0 initial", "ValidSpeed 1 0"}},
      {"RUN_WITHOUT_STATEMGR", "StateMgr", {}},
      {"NO_RADARHAL",
       "RadarHal",
       {"RadarState 1 1 initial", "Radar 1 0 0 0 0 initial 0 0", "Speed 2 0 initial 0 0"}},
      {"NO_MICMGR", "MicMgr", {}},
      {"NO_VIDEOMGR", "VideoMgr", {}},
      {"NO_ACCELHAL", "AccelHal", {}},
      {"NO_TEMPHAL", "TempHal", {}},
  };
  for (const Switched& row : rows) {
    SCOPED_TRACE(row.variable);
    setenv(row.variable, "", 1);
    EXPECT_TRUE(Subscribe());
    unsetenv(row.variable);
    const auto asked = servers_->Asked();
    EXPECT_TRUE(std::none_of(asked.begin(), asked.end(),
                             [&](const std::string& line) { return line.starts_with(row.server); }));
    EXPECT_FALSE(asked.empty());
    const auto calls = [&](const char* server, const Texts& usual) {
      return server == std::string(row.server) ? row.calls : usual;
    };
    EXPECT_EQ(StoreCalls(),
              Joined({calls("ConfigMgr", kConfigCalls), kFirstOutput, calls("Fpga", Inputs("54", "101")),
                      calls("GpsHal", kGpsCalls), calls("RadarHal", kRadarCalls), calls("MicMgr", kMicCalls),
                      calls("VideoMgr", kVideoCalls), calls("AccelHal", kAccelCalls),
                      calls("TempHal", kTempCalls), kFullState}));
  }
}

TEST_F(SubscribeTest, SwitchedOffServersAreSaidExactly) {
  const std::pair<const char*, const char*> rows[] = {
      {"NO_CONFIGMGR", "SubscribeToConfigMgr - set to ignore ConfigMgr "},
      {"NO_MICMGR", "SubscribeToMicMgr - set to ignore MicMgr "},
      {"NO_VIDEOMGR", "SubscribeToVideoMgr - set to ignore VideoMgr "},
      {"NO_ACCELHAL", "SubscribeToAccelHal - set to ignore AccelHal "},
      {"NO_TEMPHAL", "SubscribeToTempHal - set to ignore TempHal "}};
  const LogCapture capture;
  for (const auto& [variable, text] : rows) Set(variable);
  EXPECT_TRUE(Subscribe());
  LinxIpc quiet("Quiet");
  const LogCapture second;
  EXPECT_TRUE(manager_->SubscribeToConfigMgr(quiet) && manager_->SubscribeToMicMgr(quiet) &&
              manager_->SubscribeToVideoMgr(quiet) && manager_->SubscribeToAccelHal(quiet) &&
              manager_->SubscribeToTempHal(quiet));
  Texts lines = LogText(second.Text());
  std::erase_if(lines, [](const std::string& line) { return !line.starts_with("32 "); });
  ASSERT_EQ(lines.size(), std::size(rows));
  for (std::size_t i = 0; i < lines.size(); ++i)
    EXPECT_EQ(lines[i], std::string("32 MetadataMgr: ") + rows[i].second);
}

TEST_F(SubscribeTest, ServerThatNotifiesAtFullRateWhileItIsSubscribedToDoesNotLockUp) {
  EXPECT_TRUE(Subscribe({{"VideoMgr", {.floods = 0}}}));
  StoreCalls().clear();
  EXPECT_TRUE(Eventually([&] {
    (void)ipc_->Receive(100, 0, LinxIpc::emptyString, nullptr);
    return !StoreCalls().empty();
  }));
  EXPECT_EQ(StoreCalls().front(), "Camera 0 0 event 1");
}

// ---- Restart

TEST_F(SubscribeTest, ARestartRenewsAllSubscriptionsOfItsServerAndReportsNothing) {
  EXPECT_TRUE(Subscribe());
  (void)servers_->Asked();
  StoreCalls().clear();
  const struct {
    unsigned int process;
    const char* said;
    Texts asked;
  } rows[] = {
      {2, "StateMgr", {"StateMgr 1", "StateMgr 2", "StateMgr 3", "StateMgr 4"}},
      {3, "ConfigMgr", {"ConfigMgr 10", "ConfigMgr 7", "ConfigMgr 11", "ConfigMgr 12", "ConfigMgr 13"}},
      {4, "FpgaHal", {"Fpga 17"}},
      {7, "RadarHal", {"RadarHal 1"}},
      {11, "MicMgr", {"MicMgr 0"}},
      {12, "GpsHal", {"GpsHal 1"}},
      {13, "AccelHal", {"AccelHal 1"}},
      {14, "TempHal", {"TempHal 0"}},
      {21, "VideoMgr", {"VideoMgr 0", "VideoMgr 1"}},
      {29,
       "ExternalMgr",
       {"ExternalMgr 16", "ExternalMgr 17", "ExternalMgr 18", "ExternalMgr 19", "ExternalMgr 20",
        "ExternalMgr 21"}},
  };
  for (const auto& row : rows) {
    LogClient::Instance().Level(255);
    const LogCapture capture;
    manager_->ProcessRestarted(*ipc_, e_Process{row.process});
    Texts renewed;
    EXPECT_TRUE(Eventually([&] {
      for (const std::string& line : servers_->Asked()) renewed.push_back(line);
      return renewed.size() >= row.asked.size();
    }));
    EXPECT_EQ(renewed, row.asked);
    EXPECT_EQ(LogText(capture.Text()),
              (Texts{"64 MetadataMgr: Process Restarted " + std::to_string(row.process),
                     std::string("128 MetadataMgr: Need to resubscribe to ") + row.said}));
  }
  Dispatch();  // the answers are swallowed
  EXPECT_EQ(StoreCalls(), Texts{});
  EXPECT_EQ(servers_->Asked(), Texts{});
}

TEST_F(SubscribeTest, ARestartOfAnAbsentClientIsARefusedRenewal) {
  Set("NO_MICMGR");
  EXPECT_TRUE(Subscribe());
  LogClient::Instance().Level(255);
  const LogCapture capture;
  for (const unsigned int process : {11U, 5U, 30U}) manager_->ProcessRestarted(*ipc_, e_Process{process});
  manager_->ProcessDied(*ipc_, e_Process{21});
  EXPECT_EQ(LogText(capture.Text()),
            (Texts{"64 MetadataMgr: Process Restarted 11", "128 MetadataMgr: Need to resubscribe to MicMgr",
                   "1 MetadataMgr: MetadataMgr FAILED to resubsribe to a server",
                   "64 MetadataMgr: Process Restarted 5", "64 MetadataMgr: Process Restarted 30",
                   "64 MetadataMgr: Process Died 21"}));
}

TEST_F(SubscribeTest, AServerThatDiedAndCameBackIsHeardAgain) {
  EXPECT_TRUE(Subscribe());
  servers_->Kill("VideoMgr");
  manager_->ProcessRestarted(*ipc_, e_Process_VideoMgr);  // too early: refused, nothing breaks
  (void)servers_->Asked();
  servers_->Start("VideoMgr", {.floods = 0});
  Texts renewed;
  EXPECT_TRUE(Eventually([&] {
    if (renewed.empty()) manager_->ProcessRestarted(*ipc_, e_Process_VideoMgr);
    for (const std::string& line : servers_->Asked()) renewed.push_back(line);
    return !renewed.empty();
  }));
  StoreCalls().clear();
  EXPECT_TRUE(Eventually([&] {
    (void)ipc_->Receive(100, 0, LinxIpc::emptyString, nullptr);
    return !StoreCalls().empty();
  }));
}

// ---- End

TEST_F(SubscribeTest, CleanupEndsTheSubscriptions) {
  EXPECT_TRUE(Subscribe({{"VideoMgr", {.floods = 0}}}));
  StoreCalls().clear();
  manager_->Cleanup();
  EXPECT_EQ(StoreCalls(), (Texts{"ShutdownData", "Close", "WatchdogUnsubscribe"}));
  Dispatch();
  EXPECT_EQ(StoreCalls(), (Texts{"ShutdownData", "Close", "WatchdogUnsubscribe"}));
}

}  // namespace
