#include <csignal>
#include <set>

#include "Car.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "system/BigEndian.h"
#include "system/Systick.h"

namespace {

TEST(Event, TravelsFromTheMessageToTheFile) {
  const struct {
    unsigned int type;
    std::string payload;
    Lines events;
  } table[] = {
      {kRecordStartStop, "80000001 01", {"recording started event 2147483649"}},
      {kRecordStartStop, "00000000 00", {"recording stopped event 0"}},
      {kRecordStartStop, "00000005 02ffff", {"recording started event 5"}},
      {kBookmark, "00000006", {"bookmark set event 6"}},
      {kBookmark, "ffffffff 00", {"bookmark set event 4294967295"}},
      {kStreamState, "00000007 00000003 00000009", {"stream 3 state 9 event 7"}},
      {kStreamState, "00000007 00000004 00000009", {}},
      {kStreamState, "00000007 ffffffff 00000009", {}},
      {kStreamState, "00000007 00000000 ffffffff", {"stream 0 state 4294967295 event 7"}},
      {kCameraState, "00000008 00000003 00000001 00", {"camera 3 state 1 event 8"}},
      {kCameraState, "00000008 00000004 00000001", {}},
      {kCameraState, "00000008 ffffffff 00000001", {}},
      {kMicState,
       "00000009 00000003 0100",
       {"microphone 3 present event 9", "microphone 3 not active event 9"}},
      {kMicState, "0000000a 00000000 0001", {"microphone 0 absent event 10", "microphone 0 active event 10"}},
      {kMicState, "00000009 00000004 0100", {}},
      {kMicState, "00000009 ffffffff 0100", {}},
  };
  Car car;
  car.Run();
  Lines expected;
  for (const auto& row : table) {
    car.stateMgr.Send(row.type, row.payload);
    expected.insert(expected.end(), row.events.begin(), row.events.end());
  }
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), expected);
  EXPECT_EQ(car.Log(kTrouble), (Lines{"1 MetadataMgr: VideoStreamStateChanged: Invalid streamNo 4",
                                      "1 MetadataMgr: VideoStreamStateChanged: Invalid streamNo 4294967295",
                                      "1 MetadataMgr: CameraStateChanged: Invalid camera no 4",
                                      "1 MetadataMgr: CameraStateChanged: Invalid camera no 4294967295",
                                      "1 MetadataMgr: ReportMicState: Invalid mic no 4",
                                      "1 MetadataMgr: ReportMicState: Invalid mic no 4294967295"}));
}

TEST(Event, IsRecordedInSilenceAtLogLevelZero) {
  Car car;
  car.Run({"-l", "0"});
  car.stateMgr.Send(kBookmark, "00000001");
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{"bookmark set event 1"});
  EXPECT_EQ(car.program->Err(), "");
}

TEST(Event, SaysWhatItDoes) {
  Car car;
  car.Run({"-l", "255"});
  EXPECT_EQ(car.LogAfter(kRecordStartStop, "00000005 01"),
            (Lines{By(kManager, "64 RecordStartStopHandler"),
                   By(kManager, "128 ReportRecordingEvent - recordStart = 1")}));
  EXPECT_EQ(car.LogAfter(kBookmark, "00000006"),
            (Lines{By(kManager, "64 BookmarkHandler"), By(kManager, "128 ReportBookmark"),
                   "128 MetadataMgrServer: Bookmark"}));
  EXPECT_EQ(car.LogAfter(kDied, "0000000c"),
            (Lines{By(kInitializer, "128 Process Died"), By(kManager, "64 Process Died 12")}));
  EXPECT_EQ(car.LogAfter(kRestarted, "00000063"),
            (Lines{By(kInitializer, "128 Process Restarted"), By(kManager, "64 Process Restarted 99")}));
  EXPECT_EQ(
      car.LogAfter(kLogLevelSet, "000000ff"),
      (Lines{By(kInitializer, "128 HandleLogLevel"), By(kInitializer, "64 HandleLogLevel: set mask ff")}));
  EXPECT_EQ(car.LogAfter(kGetTick), Lines{By(kManager, "128 GetLastSystemTickHandler")});
}

TEST(Event, SaysThatThePayloadIsMissing) {
  const struct {
    unsigned int type;
    std::string source;
    const char* entry;
    const char* missing;
  } table[] = {
      {kRecordStartStop, kManager, "64 RecordStartStopHandler",
       "RecordStartStopHandler: error, DataPtr is null"},
      {kBookmark, kManager, "64 BookmarkHandler", "BookmarkHandler: error, DataPtr is null"},
      {kStreamState, kManager, "64 VideoStreamStateChangeHandler",
       "VideoStreamStateChangeHandler: error, DataPtr is null"},
      {kCameraState, kManager, "64 CliCameraStateChangedHandler",
       "CameraStateChangedHandler: error, DataPtr is null"},
      {kMicState, kManager, "64 MicStateChangedHandler", "MicStateChangedHandler: error, DataPtr is null"},
      {kCopy, kManager, "64 MetadataToFile", "MetadataToFileHandler: error, DataPtr is null"},
      {kDied, kInitializer, "128 Process Died", "NULL MESSAGE"},
      {kRestarted, kInitializer, "128 Process Restarted", "NULL MESSAGE"},
      {kLogLevelGet, kInitializer, "128 HandleLogLevel", "HandleLogLevel: error, DataPtr is null"},
      {kLogLevelSet, kInitializer, "128 HandleLogLevel", "HandleLogLevel: error, DataPtr is null"},
  };
  Car car;
  car.Run({"-l", "255"});
  for (const auto& row : table) {
    EXPECT_EQ(car.LogAfter(row.type), (Lines{By(row.source, row.entry), "2 " + row.source + row.missing}));
  }
  EXPECT_TRUE(car.stateMgr.HasHeardNothing());  // and nothing is answered
}

TEST(Event, IsOnDiskAsSoonAsItIsCriticalAndReported) {
  Car car;
  car.Run();
  car.stateMgr.Send(kBookmark, "00000001");
  EXPECT_TRUE(car.Answers());
  car.program->Signal(SIGKILL);
  EXPECT_EQ(car.End(), 128 + SIGKILL);
  EXPECT_EQ(car.Events(), Lines{"bookmark set event 1"});
  EXPECT_EQ(car.Records("source='run'"), Lines{});

  car.Run();  // the next one begins a file of its own
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{});
  EXPECT_EQ(
      car.Records(
             "source='previous run' AND event='initial' AND text LIKE 'cut off metadata.000001.db at tick %'")
          .size(),
      1U);
}

TEST(Event, IsOnDiskSoonThoughNothingElseHappens) {
  Car car;
  car.Run();
  car.stateMgr.Send(kCameraState, "00000001 00000002 00000003");
  EXPECT_TRUE(Eventually([&] { return car.Events() == Lines{"camera 2 state 3 event 1"}; }));
}

TEST(Event, LiveStreamsAreOfHighQualityWhereForced) {
  Car car;
  car.environment["LVS_FORCE_HQ"] = "";
  car.Run();
  car.externalMgr.Send(18957, "01 00 0002 000c" + ToHex("192.168.1.20") + "022a");
  EXPECT_EQ(car.externalMgr.Ask(kPing, "", kPong), "");
  EXPECT_EQ(car.Quit(), 0);
  const Lines events = car.Events();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].rfind("live stream 5 on camera 2 high quality to 192.168.1.20:554 event ", 0), 0U)
      << events[0];
}

TEST(Event, FillersAreWrittenOnEachPassWhereForced) {
  Car car;
  car.environment["FORCE_METADATA"] = "";
  car.Run();
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Log(), Lines{"4 MetadataMgr: Forcing fake periodic metadata"});
  const Lines fillers = car.Records("source='filler' AND event='event'");
  ASSERT_FALSE(fillers.empty());
  EXPECT_GT(std::stoul(fillers[0].substr(std::string("filler Test string for filler ").size())), 0U);
}

TEST(Event, IsInventedWhereSimulated) {
  const struct {
    Arguments arguments;
    std::set<std::string> sources;
  } table[] = {
      {{"-s"}, {"aux", "brakes", "doorOpen", "gps", "ignition", "lights", "microphone", "radar", "siren"}},
      {{"-s", "-r"}, {"radar"}},
      {{"-r"}, {}},
  };
  for (const auto& row : table) {
    Car car;
    car.Run(row.arguments);
    EXPECT_EQ(car.Quit(), 0);
    std::set<std::string> sources;
    for (const std::string& line : car.Events()) sources.insert(line.substr(0, line.find(' ')));
    sources.erase("bookmark");  // by chance
    EXPECT_EQ(sources, row.sources);
    EXPECT_EQ(car.Log(), Lines{});
  }
}

TEST(Bookmark, ReachesEverySubscriber) {
  const std::string request = "00 00 00 00 00 00 12 34";
  Car car;
  Peer display("Display");
  Peer modem("Modem");
  car.Run();
  for (Peer* peer : {&display, &modem}) {
    EXPECT_EQ(peer->Ask(kSubscribeItem, request, kItem), request + " 00 00 00 00 00");
  }
  car.stateMgr.Send(kBookmark, "00000001");
  for (Peer* peer : {&display, &modem}) EXPECT_EQ(peer->Await(0x1234), "01");
  modem.Send(kUnsubscribeItem, request);
  EXPECT_EQ(modem.Ask(kPing, "", kPong), "");
  car.stateMgr.Send(kBookmark, "00000002");
  EXPECT_EQ(display.Await(0x1234), "01");
  EXPECT_EQ(modem.Ask(kPing, "", kPong), "");
  for (Peer* peer : {&display, &modem}) EXPECT_TRUE(peer->HasHeardNothing());  // once each
}

TEST(Bookmark, ReadsFalseAndIsTheOnlyItem) {
  Car car;
  car.Run({"-l", "131"});
  car.stateMgr.Send(kBookmark, "00000001");
  EXPECT_EQ(car.stateMgr.Ask(kSubscribeItem, "00000000 00000000", kItem),
            "00 00 00 00 00 00 00 00 00 00 00 00 00");
  EXPECT_EQ(
      car.LogAfter(kSubscribeItem, "00000001 00001234"),
      (Lines{"128 MetadataMgrServer: GetItem", "2 MetadataMgrServer: GetItem Unknown item passed in 1"}));
  EXPECT_EQ(car.stateMgr.Await(kItem), "00 00 00 01 00 00 12 34 00 00 00 02");
}

TEST(Request, LastSystemTickIsTheOneThatTheStoreHolds) {
  Car car;
  const unsigned int before = Systick().SystemTick();
  car.Run();
  const std::string answer = FromHex(car.stateMgr.Ask(kGetTick, "ffff", kTick));
  ASSERT_EQ(answer.size(), 8U);
  const unsigned int tick = GetU32(reinterpret_cast<const unsigned char*>(answer.data()));
  EXPECT_GE(tick, before);
  EXPECT_LE(tick, Systick().SystemTick());
  EXPECT_EQ(ToHex(answer.substr(4)), "01 00 00 00");
  EXPECT_TRUE(Eventually([&] { return FromHex(car.stateMgr.Ask(kGetTick, "", kTick)) > answer; }));
}

TEST(Request, LogLevelIsSetAndRead) {
  Car car;
  Peer tool("Tool");
  car.Run();
  EXPECT_EQ(tool.Ask(kLogLevelSet, "00000087", kLogLevel), "00 00 00 87");
  EXPECT_EQ(car.stateMgr.Ask(kLogLevelGet, "ffffffff", kLogLevel), "00 00 00 87");
}

TEST(Request, CopyIsAnsweredWithFailure) {
  const std::string range = "00000000 ffffffff";
  const std::string payloads[] = {"61", ToHex("copy.db" + std::string(1017, '\0')) + range,
                                  ToHex(std::string(1024, 'x')) + range,
                                  ToHex(std::string(1024, '\0')) + range};
  Car car;
  car.Run();
  for (const std::string& payload : payloads) EXPECT_EQ(car.stateMgr.Ask(kCopy, payload, kCopied), "00");
  EXPECT_EQ(car.Log(), Lines(2, "2 MetadataMgr: MetadataToFileHandler: malformed request"));
}

}  // namespace
