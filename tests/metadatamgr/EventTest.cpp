#include <csignal>
#include <set>

#include "Car.h"
#include "support/Eventually.h"
#include "support/Hex.h"

namespace {

std::string Gps(const std::string& speedDeciKmh, const std::string& quality) {
  return "0030 0008" + Zeros(24) + speedDeciKmh + Zeros(6) + quality + Zeros(21) + "00000015";
}
std::string Radar(const std::string& status) {
  return status + "0032 003d 0048 0053 00000016";
}
std::string Inputs(const std::string& changed, const std::string& levels) {
  return changed + levels + "0000dead 0000000b";
}
std::string Text(const std::string& text) {
  return "00" + ToHex(std::string(1, static_cast<char>(text.size()))) + ToHex(text);
}
// The states of entries 5 to 8; the four before are 4 to 7, and entry 4 never counts.
std::string Cameras(const std::string& last) {
  return "00000004 00000005 00000006 00000007 00000001" + last + "00000029";
}

Lines Changed(std::initializer_list<std::string> inputs) {
  Lines lines = {"128 Add in SystemTick to ExternalEvent - tick = 11"};
  for (const std::string& input : inputs) lines.push_back("128 ReportExternalEvent " + input + " changed");
  return lines;
}
const Lines kGpsTick = {"128 Add in SystemTick to GpsStatusItem - tick = 21"};
const Lines kRadarTick = {"128 Add in SystemTick to RadarItem - tick = 22"};
const Lines kNoFix = {"gps no fix event", "speed gps not valid event"};
const Lines kRadarReading = {"radar 1 reading event", "radar 1 61 72 83 event 22", "speed radar 50 event 22"};
Lines Fix(const std::string& deciKmh, const std::string& quality, const std::string& kmh) {
  return {"gps fix event",
          "gps -48.133333 0.000000 0.0 m, " + deciKmh + " km/h, course 0.0, " + quality +
              ", 0 satellites event 21",
          "speed gps " + kmh + " event 21"};
}
Lines Recording(const char* on) {
  return {std::string("128 ReportRecordingEvent - recordStart = ") + on};
}
Lines Covert(const char* on) {
  return {std::string("128 ReportCovertModeEvent - enabled = ") + on};
}
Lines FourCameras(const char* state3) {
  return {"camera 0 state 4 event 41", "camera 1 state 5 event 41", "camera 2 state 6 event 41",
          std::string("camera 3 state ") + state3 + " event 41"};
}

// What each message makes of itself: records in order, with the sender's tick, and lines of the manager.
const struct {
  const char* what;
  unsigned int type;
  std::string payload;
  Lines events;
  Lines log = {};
} kEvents[] = {
    // clang-format off
    {"start", kRecordStart, "00000007", {"recording started event 7"}, Recording("1")},
    {"start at tick 0 is ignored", kRecordStart, "00000000", {}},
    {"stop at tick 0 is not", kRecordStop, "00000000", {"recording stopped event 0"}, Recording("0")},
    {"covert", kEnterCovert, "00000000", {"covert entered event 0"}, Covert("1")},
    {"no longer", kExitCovert, "00000009", {"covert left event 9"}, Covert("0")},
    {"direct start at tick 0", kRecordStartStop, "00000000 01", {"recording started event 0"}, Recording("1")},
    {"direct stop", kRecordStartStop, "ffffffff 00", {"recording stopped event 4294967295"}, Recording("0")},
    {"any other byte is a start", kRecordStartStop, "80000001 80 ffff", {"recording started event 2147483649"},
     Recording("1")},
    {"bookmark", kBookmark, "00000006 00", {"bookmark set event 6"}, {"128 ReportBookmark"}},

    {"inputs in the order of the table, not of the bits", kInputs, Inputs("000be000", "000be000"),
     {"lights on event 11", "brakes on event 11", "siren on event 11", "aux on event 11",
      "doorOpen open event 11", "ignition on event 11"},
     Changed({"lights", "brakes", "siren", "aux", "doorOpen", "ignition"})},
    {"changed and off", kInputs, Inputs("000a8000", "00008000"),
     {"lights on event 11", "siren off event 11", "doorOpen closed event 11"},
     Changed({"lights", "siren", "doorOpen"})},
    {"active but unchanged", kInputs, Inputs("00000000", "ffffffff"), {}, Changed({})},
    {"foreign bits", kInputs, Inputs("fff41fff", "ffffffff"), {}, Changed({})},

    {"the speed is cut", kGps, Gps("0013", "00000001"), Fix("1.9", "fix", "1"), kGpsTick},
    {"estimated is a fix", kGps, Gps("0000", "00000006"), Fix("0.0", "quality 6", "0"), kGpsTick},
    {"no fix", kGps, Gps("0013", "00000000"), kNoFix, kGpsTick},
    {"manual input is no fix", kGps, Gps("0013", "00000007"), kNoFix, kGpsTick},
    {"reading", kRadar, Radar("0001"), kRadarReading, kRadarTick},
    {"other bits of the status", kRadar, Radar("ff7f"), kRadarReading, kRadarTick},
    {"no reading", kRadar, Radar("0081"), {"radar 1 no reading event", "speed radar not valid event"},
     kRadarTick},

    {"microphone 3", kMicState, "00000005 00000003 0100",
     {"microphone 3 present event 5", "microphone 3 not active event 5"}},
    {"microphone 4", kMicState, "00000005 00000004 0101", {}, {"1 ReportMicState: Invalid mic no 4"}},
    {"microphone -1", kMicState, "00000005 ffffffff 0101", {}, {"1 ReportMicState: Invalid mic no 4294967295"}},
    {"of a status none is checked", kMics, "0002 00000002 0101 00000007 0001 0000001f",
     {"microphone 2 present event 31", "microphone 2 active event 31", "microphone 7 absent event 31",
      "microphone 7 active event 31"},
     {"128 ReportMicStatus", "32 2 active=1 present=1", "32 7 active=1 present=0"}},
    {"temperatures, sensor 3 first", kTemperatures, "0021 0016 000b ffd8 00000020",
     {"temperature 3 33 event 32", "temperature 0 -40 event 32", "temperature 1 11 event 32",
      "temperature 2 22 event 32"}},
    {"crash", kCrash, "01 00000008", {"crash detected event 8"}},
    {"what a tick lacks is zero", kCrash, "00 0102", {"crash cleared event 16908288"}},

    {"stream 3", kStreamState, "00000001 00000003 00000009", {"stream 3 state 9 event 1"}},
    {"stream 4", kStreamState, "00000001 00000004 00000009", {},
     {"1 VideoStreamStateChanged: Invalid streamNo 4"}},
    {"camera 3", kCameraState, "00000001 00000003 ffffffff 00", {"camera 3 state 4294967295 event 1"}},
    {"camera -1", kCameraState, "00000001 ffffffff 00000009", {},
     {"1 CameraStateChanged: Invalid camera no 4294967295"}},
    {"port 3 is entry 3", kCameras, Cameras("00000000 00000003 00000003 00000003"), FourCameras("7")},
    {"the last active one counts", kCameras, Cameras("00000002 00000000 00000001 00000003"), FourCameras("1")},
    {"up to entry 8", kCameras, Cameras("00000001 00000000 00000000 00000002"), FourCameras("2")},
    {"quality", kQuality, "0500 02d0 001e 0fa0" + Zeros(24) + "0000002a",
     {"stream 0 1280x720 30 frames/s 4000 kbit/s event 42", "stream 1 0x0 0 frames/s 0 kbit/s event 42",
      "stream 2 0x0 0 frames/s 0 kbit/s event 42", "stream 3 0x0 0 frames/s 0 kbit/s event 42"}},

    {"live stream", kLiveStream0, "01 00 0001" + Text("10.0.0.5") + "216a",
     {"live stream 0 on camera 1 to 10.0.0.5:8554 event"},
     {"16 Rcvd ext streaming state change, stream 0  en:1  HiQual:0  Cam:1  Ip: 10.0.0.5  Port:8554"}},
    {"its camera is cut to a byte", kLiveStream0 + 5, "00 01 0102" + Text("192.168.1.20") + "022a",
     {"live stream 5 off camera 2 high quality to 192.168.1.20:554 event"},
     {"16 Rcvd ext streaming state change, stream 5  en:0  HiQual:1  Cam:258  Ip: 192.168.1.20  Port:554"}},
    {"no address", kLiveStream0 + 3, "01 00 0000 0000 0000", {"live stream 3 on camera 0 event"},
     {"16 Rcvd ext streaming state change, stream 3  en:1  HiQual:0  Cam:0  Ip:   Port:0"}},

    {"vehicle", kVehicle, Text("4711") + Text("AB 123"), {"vehicle unit 4711, plate AB 123 event"}},
    {"officer", kOfficer, Text("Lee") + Text("17"), {"officer Lee, badge 17 event"}},
    {"department", kDepartment, Text("North") + Text("Traffic"), {"department North, Traffic event"}},
    {"system", kSystem, Text("rec") + Text("2.1"), {"system info rec, software 2.1 event"}},
    {"settings", kSettings, "001e 0001 0500 02d0 0019 0fa0",
     {"recording settings 30 s before, 1 s after, 1280x720 25 frames/s 4000 kbit/s event"}},
    // clang-format on
};

TEST(Event, TravelsFromTheMessageToTheFile) {
  Car car;
  car.UseServers();
  car.Run({"-l", "191"});  // all but the entry traces
  Lines expected;
  for (const auto& row : kEvents) {
    Lines log = car.LogAfter(row.type, row.payload);
    std::erase(log, "128 MetadataMgrServer: Bookmark");
    std::erase(log, By(kManager, "128 LVSStateChangeHandler"));
    Lines said;
    for (const std::string& line : row.log) said.push_back(By(kManager, line));
    EXPECT_EQ(log, said) << row.what;
    expected.insert(expected.end(), row.events.begin(), row.events.end());
  }
  EXPECT_EQ(car.Quit(), 0);
  Lines events = car.Events();
  for (std::string& line : events) {  // they carry no tick: the store's own
    if (line.starts_with("live stream")) line.resize(line.rfind(' '));
  }
  EXPECT_EQ(Joined(events), Joined(expected));
  EXPECT_EQ(car.Records("source LIKE 'live stream %' AND abs(sender_tick-tick)>10000"), Lines{});
}

TEST(Event, IsRecordedInSilenceAtLogLevelZero) {
  Car car;
  car.Run({"-l", "0"});
  car.stateMgr.Send(kBookmark, "00000001");
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{"bookmark set event 1"});
  EXPECT_EQ(car.program->Err(), "");
}

TEST(Event, IsOnDiskSoonAndAtOnceWhereItIsCritical) {
  Car car;
  car.Run();
  car.stateMgr.Send(kCameraState, "00000001 00000002 00000003");
  EXPECT_TRUE(Eventually([&] { return car.Events() == Lines{"camera 2 state 3 event 1"}; }));
  car.stateMgr.Send(kBookmark, "00000002");
  EXPECT_TRUE(car.Answers());
  car.program->Signal(SIGKILL);
  EXPECT_EQ(car.End(), 128 + SIGKILL);
  EXPECT_EQ(car.Events(), (Lines{"camera 2 state 3 event 1", "bookmark set event 2"}));
  EXPECT_EQ(car.Records("source='run'"), Lines{});

  car.Run();  // the next one begins a file of its own
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{});
  EXPECT_EQ(car.Records("event='initial' AND text LIKE 'cut off metadata.000001.db at tick %'").size(), 1U);
}

TEST(Event, IsInventedOrOfHighQualityWhereForced) {
  Car car;
  car.environment["FORCE_METADATA"] = "";
  car.environment["LVS_FORCE_HQ"] = "";
  car.Run();
  car.externalMgr.Send(kLiveStream0 + 5, "01 00 0002" + Text("192.168.1.20") + "022a");
  EXPECT_EQ(car.externalMgr.Ask(kPing, "", kPong), "");
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Log(), Lines{"4 MetadataMgr: Forcing fake periodic metadata"});
  EXPECT_EQ(car.Records("text='on camera 2 high quality to 192.168.1.20:554'").size(), 1U);
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
    for (const char* byChance : {"bookmark", "speed"}) sources.erase(byChance);
    EXPECT_EQ(sources, row.sources);
    EXPECT_EQ(car.Log(), Lines{});
  }
}

}  // namespace
