// What each message makes of itself: the exact calls on the store, in order, with flags and ticks,
// and the log lines. The handlers are called as the endpoint calls them.

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "Events.h"

namespace {

using ReportText = std::vector<std::string>;

struct Case {
  const char* name;
  LinxIpc::Handler handler;
  std::string payload;
  ReportText calls;
  ReportText log;  // beside the entry trace

  friend std::ostream& operator<<(std::ostream& out, const Case& c) { return out << c.name; }
};

class EventTest : public EventsTest, public testing::WithParamInterface<Case> {};

TEST_P(EventTest, ReportsExactly) {
  const Case& c = GetParam();
  Deliver(c.handler, c.payload);
  EXPECT_EQ(StoreCalls(), c.calls);
  ReportText log = Log();
  ASSERT_FALSE(log.empty());
  log.erase(log.begin());
  EXPECT_EQ(log, c.log);
}

std::string CaseName(const testing::TestParamInfo<Case>& info) {
  return info.param.name;
}

constexpr auto kStart = MetadataMgr::RecordStartHandler;
constexpr auto kStop = MetadataMgr::RecordStopHandler;

INSTANTIATE_TEST_SUITE_P(Recording, EventTest,
                         testing::Values(Case{"Start",
                                              kStart,
                                              Words(7),
                                              {"StateData 70 event 7"},
                                              {"128 ReportRecordingEvent - recordStart = 1"}},
                                         Case{"StartAtTickZeroIsIgnored", kStart, Words(0), {}, {}},
                                         Case{"StopAtTickZeroIsNot",
                                              kStop,
                                              Words(0),
                                              {"StateData 71 event 0"},
                                              {"128 ReportRecordingEvent - recordStart = 0"}},
                                         Case{"CovertEntered",
                                              MetadataMgr::EnterCovertModeHandler,
                                              Words(0),
                                              {"StateData 58 event 0"},
                                              {"128 ReportCovertModeEvent - enabled = 1"}},
                                         Case{"CovertLeft",
                                              MetadataMgr::ExitCovertModeHandler,
                                              Words(9),
                                              {"StateData 59 event 9"},
                                              {"128 ReportCovertModeEvent - enabled = 0"}},
                                         Case{"DirectStartAtTickZero",
                                              MetadataMgr::RecordStartStopHandler,
                                              Words(0) + '\1',
                                              {"StateData 70 event 0"},
                                              {"128 ReportRecordingEvent - recordStart = 1"}},
                                         Case{"DirectStop",
                                              MetadataMgr::RecordStartStopHandler,
                                              Words(0xFFFFFFFF) + '\0',
                                              {"StateData 71 event 4294967295"},
                                              {"128 ReportRecordingEvent - recordStart = 0"}},
                                         Case{"AnyOtherByteIsAStart",
                                              MetadataMgr::RecordStartStopHandler,
                                              Words(5) + '\x80',
                                              {"StateData 70 event 5"},
                                              {"128 ReportRecordingEvent - recordStart = 1"}}),
                         CaseName);

std::string Inputs(unsigned int changed, unsigned int levels) {
  return Words(changed, levels, 0xDEAD, 11);
}
constexpr auto kInputs = MetadataMgr::ExternalInputEventHandler;
constexpr const char* kInputTick = "128 Add in SystemTick to ExternalEvent - tick = 11";

INSTANTIATE_TEST_SUITE_P(
    Inputs, EventTest,
    testing::Values(
        Case{"InTableOrderNotBitOrder",
             kInputs,
             Inputs(0x000BE000, 0x000BE000),
             {"StateData 52 event 11", "StateData 56 event 11", "StateData 54 event 11",
              "StateData 60 event 11", "StateData 62 event 11", "StateData 68 event 11"},
             {kInputTick, "128 ReportExternalEvent lights changed", "128 ReportExternalEvent brakes changed",
              "128 ReportExternalEvent siren changed", "128 ReportExternalEvent aux changed",
              "128 ReportExternalEvent doorOpen changed", "128 ReportExternalEvent ignition changed"}},
        Case{"ChangedAndOff",
             kInputs,
             Inputs(0x000A8000, 0x00008000),
             {"StateData 52 event 11", "StateData 55 event 11", "StateData 63 event 11"},
             {kInputTick, "128 ReportExternalEvent lights changed", "128 ReportExternalEvent siren changed",
              "128 ReportExternalEvent doorOpen changed"}},
        Case{"ActiveButUnchanged", kInputs, Inputs(0, 0xFFFFFFFF), {}, {kInputTick}},
        Case{"ForeignBits", kInputs, Inputs(0xFFF41FFF, 0xFFFFFFFF), {}, {kInputTick}}),
    CaseName);

std::string Gps(unsigned int quality, std::uint16_t speedDeciKmh) {
  GpsStatusItem item;
  item.latitudeDegrees = 48;
  item.latitudeMinutes = 8;
  item.quality = quality;
  item.speedDeciKmh = speedDeciKmh;
  item.tick = 21;
  return Encoded(item);
}
std::string Radar(std::uint16_t status) {
  RadarItem item;
  item.status = status;
  item.patrolSpeedKmh = 50;
  item.targetSpeedKmh = 61;
  item.fastestSpeedKmh = 72;
  item.lockedSpeedKmh = 83;
  item.tick = 22;
  return Encoded(item);
}
constexpr auto kGps = MetadataMgr::GpsStatusEventHandler;
constexpr auto kRadar = MetadataMgr::RadarEventHandler;
const ReportText kGpsLog = {"128 Add in SystemTick to GpsStatusItem - tick = 21"};
const ReportText kRadarLog = {"128 Add in SystemTick to RadarItem - tick = 22"};
const ReportText kNoFix = {"GpsState 0 event", "ValidSpeed 1 0"};
const ReportText kRadarReading = {"RadarState 1 1 event", "Radar 1 61 72 83 0 event 22 0",
                                  "Speed 2 50 event 22 0"};

INSTANTIATE_TEST_SUITE_P(
    GpsAndRadar, EventTest,
    testing::Values(
        Case{"SpeedIsTruncated",
             kGps,
             Gps(1, 19),
             {"GpsState 1 event", "Gps 48 8 0 0 0 0 1 event 21", "Speed 1 1 event 21 0"},
             kGpsLog},
        Case{"EstimatedIsAFix",
             kGps,
             Gps(6, 0),
             {"GpsState 1 event", "Gps 48 8 0 0 0 0 6 event 21", "Speed 1 0 event 21 0"},
             kGpsLog},
        Case{"NoFix", kGps, Gps(0, 19), kNoFix, kGpsLog},
        Case{"ManualInputIsNoFix", kGps, Gps(7, 19), kNoFix, kGpsLog},
        Case{"Reading", kRadar, Radar(0x0001), kRadarReading, kRadarLog},
        Case{"OtherStatusBitsDoNotCount", kRadar, Radar(0xFF7F), kRadarReading, kRadarLog},
        Case{"NoReading", kRadar, Radar(0x0081), {"RadarState 1 0 event", "ValidSpeed 2 0"}, kRadarLog}),
    CaseName);

std::string Mics(std::initializer_list<MicStatusResponse::Entry> entries) {
  MicStatusResponse status;
  for (const auto& entry : entries) status.Add(entry);
  status.tick = 31;
  return Encoded(status);
}
std::string Temperatures() {
  TempStatus status;
  status.sensor3Celsius = 33;
  status.sensor2Celsius = 22;
  status.sensor1Celsius = 11;
  status.sensor0Celsius = -40;
  status.tick = 32;
  return Encoded(status);
}
constexpr auto kMic = MetadataMgr::MicStateChangedHandler;

INSTANTIATE_TEST_SUITE_P(
    Sensors, EventTest,
    testing::Values(
        Case{"Microphone3",
             kMic,
             Words(5, 3) + std::string("\1\0", 2),
             {"MicPresent 3 1 event 5", "MicState 3 0 event 5"},
             {}},
        Case{"Microphone4", kMic, Words(5, 4) + "\1\1", {}, {"1 ReportMicState: Invalid mic no 4"}},
        Case{"MicrophoneMinus1",
             kMic,
             Words(5, 0xFFFFFFFF) + "\1\1",
             {},
             {"1 ReportMicState: Invalid mic no 4294967295"}},
        Case{"ResponseIsNotChecked",
             MetadataMgr::MicMgrStatusHandler,
             Mics({{e_MicrophonePosition{2}, true, true}, {e_MicrophonePosition{7}, false, true}}),
             {"MicPresent 2 1 event 31", "MicState 2 1 event 31", "MicPresent 7 0 event 31",
              "MicState 7 1 event 31"},
             {"128 ReportMicStatus", "32 2 active=1 present=1", "32 7 active=1 present=0"}},
        Case{"EmptyResponse", MetadataMgr::MicMgrStatusHandler, Mics({}), {}, {"128 ReportMicStatus"}},
        Case{"TemperaturesOfSensor3First",
             MetadataMgr::TempChangeHandler,
             Temperatures(),
             {"Temp 3 33 event 32", "Temp 0 -40 event 32", "Temp 1 11 event 32", "Temp 2 22 event 32"},
             {}},
        Case{"Crash", MetadataMgr::CrashDetectHandler, '\1' + Words(8), {"StateData 66 event 8"}, {}},
        Case{"CrashCleared", MetadataMgr::CrashDetectHandler, '\0' + Words(8), {"StateData 67 event 8"}, {}}),
    CaseName);

std::string Cameras(const std::vector<unsigned int>& states) {
  VideoMgrCameraItem item;
  std::transform(states.begin(), states.end(), item.states.begin(),
                 [](unsigned int s) { return e_CameraState{s}; });
  item.tick = 41;
  return Encoded(item);
}
ReportText CameraCalls(const char* port3) {
  return {"Camera 0 4 event 41", "Camera 1 5 event 41", "Camera 2 6 event 41",
          std::string("Camera 3 ") + port3 + " event 41"};
}
std::string Quality() {
  VideoMgrStreamQualityItem item;
  item.streams[0].widthPixels = 1280;
  item.tick = 42;
  return Encoded(item);
}
constexpr auto kCamera = MetadataMgr::CliCameraStateChangedHandler;
constexpr auto kStream = MetadataMgr::VideoStreamStateChangeHandler;
constexpr auto kCameras = MetadataMgr::VideoMgrCameraItemHandler;

INSTANTIATE_TEST_SUITE_P(
    Video, EventTest,
    testing::Values(
        Case{"Stream3", kStream, Words(1, 3, 9), {"VideoStream 3 9 event 1"}, {}},
        Case{"Stream4", kStream, Words(1, 4, 9), {}, {"1 VideoStreamStateChanged: Invalid streamNo 4"}},
        Case{"Camera3", kCamera, Words(1, 3, 9), {"Camera 3 9 event 1"}, {}},
        Case{"CameraMinus1",
             kCamera,
             Words(1, 0xFFFFFFFF, 9),
             {},
             {"1 CameraStateChanged: Invalid camera no 4294967295"}},
        Case{"Port3IsEntry3", kCameras, Cameras({4, 5, 6, 7, 0, 0, 0, 0, 0}), CameraCalls("7"), {}},
        Case{"Entry4NeverCounts", kCameras, Cameras({4, 5, 6, 7, 1, 0, 0, 0, 0}), CameraCalls("7"), {}},
        Case{"TheLastActiveEntryWins", kCameras, Cameras({4, 5, 6, 7, 0, 2, 0, 0, 2}), CameraCalls("2"), {}},
        Case{
            "OnlyActiveEntriesReplace", kCameras, Cameras({4, 5, 6, 7, 0, 1, 3, 3, 3}), CameraCalls("1"), {}},
        Case{"Quality",
             MetadataMgr::VideoMgrStreamQualityItemHandler,
             Quality(),
             {"StreamQuality 1280 event 42"},
             {}}),
    CaseName);

std::string Lvs(bool enabled, std::uint16_t camera, const char* address, std::uint16_t port) {
  ExternalMgrApi::StreamingLvsStateItem item;
  item.enabled.Value(enabled);
  item.camera.Value(camera);
  item.address.Value(address);
  item.port.Value(port);
  return Encoded(item);
}

INSTANTIATE_TEST_SUITE_P(
    LiveStreaming, EventTest,
    testing::Values(
        Case{
            "Stream0",
            MetadataMgr::LVSStateChangeHandler_0,
            Lvs(true, 1, "10.0.0.5", 8554),
            {"Lvs 0 1 0 1 10 0 0 5 8554 event 77"},
            {"16 Rcvd ext streaming state change, stream 0  en:1  HiQual:0  Cam:1  Ip: 10.0.0.5  Port:8554"}},
        Case{"CameraIsCutToAByte",
             MetadataMgr::LVSStateChangeHandler_5,
             Lvs(false, 258, "192.168.1.20", 554),
             {"Lvs 5 2 0 0 192 168 1 20 554 event 77"},
             {"16 Rcvd ext streaming state change, stream 5  en:0  HiQual:0  Cam:258  Ip: 192.168.1.20  "
              "Port:554"}},
        Case{"NoAddress",
             MetadataMgr::LVSStateChangeHandler_3,
             Lvs(true, 0, "", 0),
             {"Lvs 3 0 0 1 255 255 255 255 0 event 77"},
             {"16 Rcvd ext streaming state change, stream 3  en:1  HiQual:0  Cam:0  Ip:   Port:0"}}),
    CaseName);

template <typename T>
std::string Pair(const char* first, const char* second) {
  T item;
  auto [a, b] = T::Fields();
  item.*a = first;
  item.*b = second;
  return Encoded(item);
}
std::string Settings() {
  VideoRecordingSettings settings;
  settings.preEventSeconds = 30;
  settings.bitRateKbps = 4000;
  return Encoded(settings);
}

INSTANTIATE_TEST_SUITE_P(Configuration, EventTest,
                         testing::Values(Case{"Vehicle",
                                              MetadataMgr::VehicleInfoChangedHandler,
                                              Pair<VehicleInfo>("4711", "AB 123"),
                                              {"Vehicle 4711 AB 123 event"},
                                              {}},
                                         Case{"Officer",
                                              MetadataMgr::OfficerChangedHandler,
                                              Pair<Officer>("Lee", "17"),
                                              {"Officer Lee 17 event"},
                                              {}},
                                         Case{"Department",
                                              MetadataMgr::DeptInfoChangedHandler,
                                              Pair<DepartmentInfo>("North", "Traffic"),
                                              {"Department North Traffic event"},
                                              {}},
                                         Case{"System",
                                              MetadataMgr::SystemInfoChangedHandler,
                                              Pair<SystemInfo>("rec", "2.1"),
                                              {"System rec 2.1 event"},
                                              {}},
                                         Case{"RecordingSettings",
                                              MetadataMgr::VideoRecordingSettingsChangedHandler,
                                              Settings(),
                                              {"RecordingSettings 30 4000 event"},
                                              {}}),
                         CaseName);

// ---- What holds for every handler

struct NamedHandler {
  const char* name;
  LinxIpc::Handler handler;
  const char* nullName;
  const char* traceMask = "64";
};

#define HANDLER(NAME)               \
  NamedHandler {                    \
#NAME, MetadataMgr::NAME, #NAME \
  }
const NamedHandler kHandlers[] = {
    HANDLER(RecordStartHandler),
    HANDLER(RecordStopHandler),
    HANDLER(EnterCovertModeHandler),
    HANDLER(ExitCovertModeHandler),
    HANDLER(RecordStartStopHandler),
    HANDLER(BookmarkHandler),
    HANDLER(ExternalInputEventHandler),
    HANDLER(GpsStatusEventHandler),
    HANDLER(RadarEventHandler),
    HANDLER(MicStateChangedHandler),
    HANDLER(MicMgrStatusHandler),
    HANDLER(TempChangeHandler),
    HANDLER(CrashDetectHandler),
    HANDLER(VideoStreamStateChangeHandler),
    {"CliCameraStateChangedHandler", MetadataMgr::CliCameraStateChangedHandler, "CameraStateChangedHandler"},
    {"VideoMgrCameraItemHandler", MetadataMgr::VideoMgrCameraItemHandler, "CameraStateChangedHandler"},
    {"VideoMgrStreamQualityItemHandler", MetadataMgr::VideoMgrStreamQualityItemHandler,
     "CameraStateChangedHandler"},
    {"LVSStateChangeHandler", MetadataMgr::LVSStateChangeHandler_4, "LVSStateChangeHandler", "128"},
    HANDLER(VehicleInfoChangedHandler),
    HANDLER(OfficerChangedHandler),
    HANDLER(DeptInfoChangedHandler),
    HANDLER(SystemInfoChangedHandler),
    HANDLER(VideoRecordingSettingsChangedHandler),
};
#undef HANDLER

TEST_F(EventsTest, WithoutPayloadAHandlerOnlySaysSo) {
  for (const NamedHandler& row : kHandlers) {
    Deliver(row.handler, "");
    EXPECT_EQ(Log(), (ReportText{std::string(row.traceMask) + " " + row.name,
                                 std::string("2 ") + row.nullName + ": error, DataPtr is null"}));
    EXPECT_EQ(StoreCalls(), ReportText{}) << row.name;
  }
}

TEST_F(EventsTest, WithoutALogLevelAHandlerReportsAllTheSame) {
  LogClient::Instance().Level(0);
  Deliver(kStart, Words(7));
  EXPECT_EQ(StoreCalls(), ReportText{"StateData 70 event 7"});
  EXPECT_EQ(Log(), ReportText{});
}

// Items that are decoded from the whole message are taken as constructed when they do not fit;
// those decoded by pointer read zeros for what is missing; raw fields are dropped.
TEST_F(EventsTest, ShortPayloads) {
  Deliver(kGps, Gps(1, 19).substr(0, 62));
  EXPECT_EQ(StoreCalls(), kNoFix);
  Deliver(kInputs, Inputs(0xFFFFFFFF, 0xFFFFFFFF).substr(0, 15));
  EXPECT_EQ(StoreCalls(), ReportText{});
  Deliver(MetadataMgr::CrashDetectHandler, '\1' + Words(0x01020304).substr(0, 2));
  EXPECT_EQ(StoreCalls(), ReportText{"StateData 66 event 16908288"});
  Deliver(MetadataMgr::RecordStartStopHandler, Words(5));
  EXPECT_EQ(StoreCalls(), ReportText{});
}

}  // namespace
