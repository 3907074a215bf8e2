#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <iterator>

#include "Car.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "support/ListeningSocket.h"
#include "system/Servers.h"

namespace {

// Adds the last log line of every failed start.
Lines ThenNotInitialized(Lines lines) {
  lines.emplace_back("1 MetadataMgr: Unable to initialize MetadataMgr");
  return lines;
}

TEST(Start, LeadsFromTheFirstLineToTheLast) {
  Car car;
  car.Run({"-l", "255"});
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Log(kTrouble), Lines{});
  Lines log = car.Log(64 | 128);
  std::erase_if(log, [](const std::string& line) { return line.find("Event") != std::string::npos; });
  for (std::string& line : log) {
    line = line.substr(0, line.find("tick "));
    line = line.substr(0, line.find(" the key "));
    if (line.find(kManager) != std::string::npos) line.erase(line.find(kManager), kManager.size());
  }
  Lines operations;
  std::ranges::copy_if(log, std::back_inserter(operations),
                       [](const std::string& line) { return line.starts_with("128 SubscribeTo"); });
  std::erase_if(log, [](const std::string& line) { return line.starts_with("128 SubscribeTo"); });
  Lines expected;
  for (const ServerRow& server : servers::kAll)
    expected.push_back(std::string("128 SubscribeTo") + server.name);
  expected.erase(expected.begin());  // its line has another mask
  EXPECT_EQ(operations, expected);
  EXPECT_EQ(log, (Lines{By(kInitializer, "128 ProcessInitializer::SetupIpc - Successfully initialized IPC "),
                        "64 PreInit",
                        "128 Connected to shared Memory",
                        "128 DataStore: Recordings are sealed without",
                        By(kInitializer, "128 Notify to StateMgr"),
                        By(kInitializer, "128 IgnoreHandler"),
                        By(kInitializer, "128 WaitForStateMgr: Got a StateMgrProcessMsg_Subscribe"),
                        "64 SubscribeToServers",
                        "64 SubscribeToConfigMgr",
                        "64 Starting first output to metadata files at system ",
                        "64 finished first output to metadata files",
                        "128 Add in SystemTick to GpsStatusItem - ",
                        "128 Add in SystemTick to RadarItem - ",
                        By(kInitializer, "128 Notify to StateMgr"),
                        By(kInitializer, "128 IgnoreHandler"),
                        By(kInitializer, "128 WaitForStateMgr: Got a StateMgrProcessMsg_FullRun"),
                        "64 Ping Handler",
                        By(kInitializer, "128 Quit Requested"),
                        "64 Shutdown Requested",
                        By(kInitializer, "128 Notify to StateMgr"),
                        "128 Exiting 0"}));
  const std::string process = " MetadataMgr[" + std::to_string(car.program->Id()) + "] 128 MetadataMgr:";
  EXPECT_NE(car.program->Err().find(process), std::string::npos);
}

TEST(Start, MakesItsDirectoryAndKeepsTheSharedRecordToItsEnd) {
  Car car;
  car.Begin();
  struct stat status {};
  ASSERT_EQ(stat(car.Path("disk/metadata").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, S_IFDIR | 01770U);
  const std::string kept = car.SharedRecord();
  EXPECT_EQ(kept, FromHex("0100" + Zeros(50) + "07ffffff" + Zeros(32)));
  car.stateMgr.Send(kFullRun);
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.SharedRecord(), FromHex("0001") + kept.substr(2));
  EXPECT_EQ(car.Records("source='system'"), Lines{}) << "it may run without having subscribed";
}

// The start fails before the endpoint serves any peer.
TEST(Start, TellsTheStateManagerThatItFailed) {
  const struct {
    const char* variable;
    std::string value;  // "/..." is a path in the car
    Lines log;
  } table[] = {
      {"METADATA_ROOT", "/absent/disk", {"1 MetadataMgr: Error Creating directory2"}},
      {"METADATA_ROOT", "/file", {"1 MetadataMgr: Error Creating directory20"}},
      {"METADATA_ROOT",
       "/odd",
       {"1 DataStore: No recording can be begun (Not a directory), such as "
        "PATH/metadata/metadata.000001.db"}},
      {"METADATA_SHM",
       "no/name",
       {"1 MetadataSharedMem: Cannot attach /no/name: Invalid argument",
        "1 MetadataMgr: Shared Memory attachment failure"}},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.value);
    Car car;
    car.Write("file", "");
    car.Write("odd/metadata", "");
    car.environment[row.variable] = row.value[0] == '/' ? car.Path(row.value) : row.value;
    car.Start();
    EXPECT_EQ(car.stateMgr.Await(kFailedStart), "00 00 00 13");
    EXPECT_EQ(car.End(), 1);
    EXPECT_TRUE(car.stateMgr.HasHeardNothing());
    Lines expected = row.log;
    for (std::string& line : expected) {
      if (const std::size_t at = line.find("PATH"); at != std::string::npos)
        line.replace(at, 4, car.environment[row.variable]);
    }
    expected.push_back(By(kInitializer, "1 Init: PreInit failed"));
    EXPECT_EQ(car.Log(), ThenNotInitialized(expected));
  }
}

TEST(Start, NeedsAStateManager) {
  Car car;
  car.stateMgr.Leave();
  car.Start({"-l", "19"});
  EXPECT_EQ(car.End(), 1);
  EXPECT_EQ(car.Log(),
            ThenNotInitialized(
                {By(kInitializer, "1 Error sending notify to StateMgr"),
                 By(kInitializer, "1 ProcessInitializer::SetupIpc - Error sending message to StateMgr"),
                 By(kInitializer, "1 Init: Notification to StateMgr that we've started failed")}));
}

TEST(Start, SaysWhenItCannotSubscribe) {
  Car car;
  car.environment["NOTIFY_SOCKET"] = "nowhere";
  car.Begin();
  EXPECT_EQ(car.Subscribe(), "00");
  EXPECT_EQ(car.End(), 1);
  EXPECT_EQ(car.Log(), ThenNotInitialized(
                           {"1 Watchdog: NOTIFY_SOCKET names no socket: nowhere",
                            By(kInitializer, "1 ProcessInitializer::WaitForStateMgr - Failed Subscribe")}));
  EXPECT_EQ(car.Records("event='restated'"), Lines{});
}

TEST(Start, FailsOnASubscribeRequestWithoutPayload) {
  Car car;
  car.Begin();
  car.stateMgr.Send(kSubscribe);
  EXPECT_EQ(car.End(), 1);
  EXPECT_EQ(car.Log(), ThenNotInitialized({By(kInitializer, "2 StateMgr::WaitForStateMgr NULL MESSAGE")}));
}

TEST(Start, MakesItsFirstOutputOnceHoweverOftenItSubscribes) {
  Car car;
  car.Begin();
  EXPECT_EQ(car.Subscribe(), "01");
  EXPECT_EQ(car.Subscribe("00"), "01");
  car.stateMgr.Send(kFullRun);
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Records("source='system' AND event='event'"), Lines{"system started event 0"});
}

TEST(Start, WithoutStateManagerSendsItNothing) {
  Car car;
  car.environment["RUN_WITHOUT_STATEMGR"] = "";
  car.Start();
  Car::ServeExternalMgr(car.externalMgr);
  Peer tool("Tool");
  EXPECT_EQ(tool.Ask(kLogLevelGet, "00 00 00 00", kLogLevel), "00 00 00 07");
  tool.Send(kQuit);
  EXPECT_EQ(car.End(), 0);
  EXPECT_TRUE(car.stateMgr.HasHeardNothing());
  EXPECT_EQ(car.Records("source='run'"), Lines{"run clean end event"});
}

TEST(Start, BeginsTheFileWithTheDevice) {
  Car car;
  car.Write("serial", "SN 17\n");
  car.Write("versions", "KERNEL 5.10\nBUILD 1.2\nSUB_BUILD=3 rc1\n");
  car.Run();
  EXPECT_EQ(car.Quit(), 0);
  Lines order = car.Records(
      "event<>'restated' AND (source IN ('clock','previous run','device','system','run') OR text LIKE "
      "'software%')");
  for (std::string& line : order) line = line.substr(0, line.find(' ', line.find(' ') + 1));
  EXPECT_EQ(order, (Lines{"clock set", "previous run", "device hardware", "system started", "device serial",
                          "device version", "device version", "store software", "run clean"}));
  EXPECT_EQ(car.Records("source='device' AND event='initial' AND text NOT LIKE 'hardware%'"),
            (Lines{"device serial number SN 17 initial", "device version of component 2: 1.2 initial",
                   "device version of component 2: 3 rc1 initial"}));
}

TEST(Start, RecordsARecordingThatIsUnderWay) {
  Car car;
  Peer streamMgr("StreamMgr");
  car.Begin();
  car.stateMgr.Send(kSubscribe, "01");
  car.ServeStateMgr();
  Car::ServeExternalMgr(car.externalMgr);
  EXPECT_EQ(streamMgr.Await(kGetRecording), "");
  streamMgr.Send(kRecording, "0004 52454944");
  EXPECT_EQ(car.stateMgr.Await(kSubscribed), "01");
  car.stateMgr.Send(kFullRun);
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Records("source='recording'"),
            (Lines{"recording started initial 0", "recording started restated 0"}));
}

TEST(Start, TellsTheWatchdog) {
  Car car;
  car.environment["NOTIFY_SOCKET"] = car.Path("notify");
  const ListeningSocket serviceManager(car.Path("notify"));
  car.Begin();
  EXPECT_EQ(car.Subscribe(), "01");
  EXPECT_EQ(serviceManager.Heard(), Lines{});
  car.stateMgr.Send(kFullRun);
  EXPECT_TRUE(car.Answers());
  EXPECT_TRUE(Eventually([&] { return serviceManager.Heard() == Lines{"READY=1"}; }));
  EXPECT_EQ(car.Quit(), 0);
  Lines heard = serviceManager.Heard();
  std::erase(heard, "WATCHDOG=1");
  EXPECT_EQ(heard, Lines{"STOPPING=1"});
}

TEST(Signal, EndsItBeforeItListens) {
  int pipe[2];
  ASSERT_EQ(pipe2(pipe, O_NONBLOCK | O_CLOEXEC), 0);
  while (write(pipe[1], "x", 1) == 1) {
  }
  fcntl(pipe[1], F_SETFL, 0);  // full: the process blocks on its first line
  Car car;
  car.Start({"-s"}, pipe[1]);
  car.program->AwaitExec();
  car.program->Signal(SIGTERM);
  EXPECT_EQ(car.End(), 128 + SIGTERM);
  close(pipe[0]);
  close(pipe[1]);
}

TEST(Signal, OrQuitEndsTheWait) {
  for (const bool signal : {true, false}) {
    Car car;
    car.Begin({"-l", "145"});
    (void)car.stateMgr.Ask(kLogLevelGet, "00 00 00 00", kLogLevel);  // the process waits now
    if (signal) car.program->Signal(SIGTERM);
    if (!signal) car.stateMgr.Send(kQuit);
    EXPECT_EQ(car.stateMgr.Await(kShutdownDone), "");
    EXPECT_EQ(car.End(), 1);
    EXPECT_EQ(car.Log(kTrouble),
              ThenNotInitialized({By(kInitializer, "16 WaitForStateMgr - shutdown requested.")}));
    EXPECT_EQ(car.Log().back(), "128 MetadataMgr: Exiting 1");
    EXPECT_EQ(car.Records("source='run'"), Lines{"run clean end event"});
  }
}

// The process waits for a silent server; without the signal it would wait ten seconds.
TEST(Signal, OrQuitEndsTheWaitForAServer) {
  for (const bool signal : {true, false}) {
    Car car;
    car.environment.erase("NO_GPSHAL");
    Peer silent("GpsHal");
    car.Begin();
    car.stateMgr.Send(kSubscribe, "01");
    EXPECT_NE(silent.Await(kSubscribeItem), "nothing");
    const auto begin = std::chrono::steady_clock::now();
    if (signal) car.program->Signal(SIGTERM);
    if (!signal) car.stateMgr.Send(kQuit);
    EXPECT_EQ(car.stateMgr.Await(kSubscribed), "00");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_EQ(car.End(), 1);
  }
}

TEST(Signal, QuitsWhileItRuns) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Car car;
    car.Run();
    for (int i = 0; i < 50; ++i) car.program->Signal(signal);  // later ones arrive while it closes down
    EXPECT_EQ(car.stateMgr.Await(kShutdownDone), "");
    EXPECT_EQ(car.End(), 0);
    EXPECT_EQ(car.Records("source='run'"), Lines{"run clean end event"});
  }
}

}  // namespace
