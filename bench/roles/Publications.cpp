#include "Publications.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "Describe.h"
#include "GpsItem.h"
#include "MetadataMgrMessages.h"
#include "StreamingLvsStateItem.h"
#include "Track.h"
#include "Verbs.h"
#include "clients/ServerClients.h"
#include "clients/StateMgrClient.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"

namespace {

using LiveStream = ExternalMgrApi::StreamingLvsStateItem;

// ---- Payloads of messages

struct StateMessage : RecordItem<StateMessage> {
  std::uint32_t tick = 0;
  std::uint32_t number = 0;  // of the stream or camera
  std::uint32_t state = 0;
  static constexpr auto Fields() {
    return std::make_tuple(&StateMessage::tick, &StateMessage::number, &StateMessage::state);
  }
};

struct MicMessage : RecordItem<MicMessage> {
  std::uint32_t tick = 0;
  std::uint32_t mic = 0;
  bool present = false;
  bool active = false;
  static constexpr auto Fields() {
    return std::make_tuple(&MicMessage::tick, &MicMessage::mic, &MicMessage::present, &MicMessage::active);
  }
};

// ---- Arguments, which the verbs' table has checked

std::uint16_t Short(const std::string& word) {
  return static_cast<std::uint16_t>(NumberOf(word));
}

// "_" stands for a blank.
std::string Text(std::string word) {
  std::replace(word.begin(), word.end(), '_', ' ');
  return word;
}

void SplitResolution(const std::string& word, std::uint16_t& width, std::uint16_t& height) {
  const std::size_t x = word.find('x');
  width = Short(word.substr(0, x));
  height = Short(word.substr(x + 1));
}

// ---- Changes

void SetVehicle(VehicleInfo& item, const Words& words) {
  item.unitId = Text(words[0]);
  item.licensePlate = Text(words[1]);
}

void SetSystem(SystemInfo& item, const Words& words) {
  item.deviceName = Text(words[0]);
  item.softwareVersion = Text(words[1]);
}

void SetDepartment(DepartmentInfo& item, const Words& words) {
  item.name = Text(words[0]);
  item.division = Text(words[1]);
}

void SetOfficer(Officer& item, const Words& words) {
  item.name = Text(words[0]);
  item.badgeNumber = Text(words[1]);
}

void SetRecording(VideoRecordingSettings& item, const Words& words) {
  item.preEventSeconds = Short(words[0]);
  item.postEventSeconds = Short(words[1]);
  SplitResolution(words[2], item.widthPixels, item.heightPixels);
  item.framesPerSecond = Short(words[3]);
  item.bitRateKbps = Short(words[4]);
}

void SetInputs(FpgaExternalEventItem& item, const Words& words) {
  item.changedMask = 0;
  for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
    const std::uint32_t bit = InputBit(words[i]);
    item.changedMask |= bit;
    item.inputLevels = words[i + 1] == "on" ? item.inputLevels | bit : item.inputLevels & ~bit;
  }
}

void SetGpsFix(GpsStatusItem& item, const Words& words) {
  PutPoint(item, {DecimalOf(words[0]), DecimalOf(words[1]), DecimalOf(words[2]), DecimalOf(words[3]),
                  DecimalOf(words[4])});
  PutUtc(item);
}

void LoseGps(GpsStatusItem& item, const Words& /*words*/) {
  LoseFix(item);
}

void SetRadar(RadarItem& item, const Words& words) {
  item.status = 0;
  item.patrolSpeedKmh = Short(words[0]);
  item.targetSpeedKmh = Short(words[1]);
  item.fastestSpeedKmh = Short(words[2]);
  item.lockedSpeedKmh = Short(words[3]);
}

void LoseRadar(RadarItem& item, const Words& /*words*/) {
  item.status = RadarItem::kStatusInvalid;
}

void SetMic(MicStatusResponse& item, const Words& words) {
  const e_MicrophonePosition mic{NumberOf(words[0])};
  MicStatusResponse changed;
  for (const MicStatusResponse::Entry& entry : item) {
    if (entry.mic == mic) {
      changed.Add({mic, words[1] == "present", words[2] == "active"});
    } else {
      changed.Add(entry);
    }
  }
  item = changed;
}

void SetMicMessage(MicMessage& message, const Words& words) {
  message.mic = NumberOf(words[0]);
  message.present = words[1] == "present";
  message.active = words[2] == "active";
}

void SetState(StateMessage& message, const Words& words) {
  message.number = NumberOf(words[0]);
  message.state = NumberOf(words[1]);
}

void SetCameraEntries(VideoMgrCameraItem& item, const Words& words) {
  for (std::size_t entry = 0; entry < item.states.size(); ++entry) {
    item.states[entry] = e_CameraState{NumberOf(words[entry])};
  }
}

void SetQuality(VideoMgrStreamQualityItem& item, const Words& words) {
  VideoMgrStreamQualityItem::Stream& stream = item.streams[NumberOf(words[0])];
  SplitResolution(words[1], stream.widthPixels, stream.heightPixels);
  stream.framesPerSecond = Short(words[2]);
  stream.bitRateKbps = Short(words[3]);
}

void SetCrash(CrashItem& item, const Words& words) {
  item.crash = words[0] == "on";
}

void SetTemperature(TempStatus& item, const Words& words) {
  std::int16_t* const sensors[] = {&item.sensor0Celsius, &item.sensor1Celsius, &item.sensor2Celsius,
                                   &item.sensor3Celsius};
  *sensors[NumberOf(words[0])] = static_cast<std::int16_t>(DecimalOf(words[1]));
}

void SetLive(LiveStream& item, const Words& words) {
  item.enabled.Value(words[1] == "on");
  item.camera.Value(Short(words[2]));
  item.address.Value(words[3]);
  item.port.Value(Short(words[4]));
  item.highQuality.Value(words.size() > 5);
}

// ---- Readings

void FollowTrack(GpsStatusItem& item, double seconds) {
  static Track track;
  const Track::Point& point = track.At(seconds);
  if (item.HasFix()) PutPoint(item, point);
  PutUtc(item);
}

// Traffic that comes and goes while this vehicle drives its track.
void WatchTraffic(RadarItem& item, double seconds) {
  static Track track;
  item.patrolSpeedKmh = static_cast<std::uint16_t>(std::lround(track.At(seconds).speedKmh));
  item.targetSpeedKmh = static_cast<std::uint16_t>(std::lround(80 + 25 * std::sin(seconds)));
  item.fastestSpeedKmh = std::max(item.fastestSpeedKmh, item.targetSpeedKmh);
}

void WarmUp(TempStatus& item, double seconds) {
  item.sensor0Celsius = static_cast<std::int16_t>(20 + std::min(seconds / 2, 40.0));
}

void AsItIs(MicStatusResponse& /*item*/, double /*seconds*/) {}

// ---- As they are at the start

template <typename T>
void Begin(T& /*item*/) {}

void Begin(RadarItem& item) {
  item.status = 0;  // nobody drives by
}
void Begin(VehicleInfo& item) {
  SetVehicle(item, {"unit-1", "BENCH_1"});
}
void Begin(SystemInfo& item) {
  SetSystem(item, {"bench", "1.0"});
}
void Begin(DepartmentInfo& item) {
  SetDepartment(item, {"Bench_Police", "Patrol"});
}
void Begin(Officer& item) {
  SetOfficer(item, {"A._Driver", "100"});
}
void Begin(VideoRecordingSettings& item) {
  SetRecording(item, {"30", "10", "1280x720", "30", "4000"});
}
void Begin(GpsStatusItem& item) {
  PutPoint(item, {});
  PutUtc(item);
}
void Begin(MicStatusResponse& item) {
  for (unsigned int mic = 0; mic < 4; ++mic) item.Add({e_MicrophonePosition{mic}, mic == 0, false});
}
void Begin(TempStatus& item) {
  item.sensor0Celsius = item.sensor1Celsius = item.sensor2Celsius = item.sensor3Celsius = 20;
}
void Begin(VideoMgrStreamQualityItem& item) {
  for (auto& stream : item.streams) stream = {1280, 720, 30, 4000};
}

// ---- Rows of one item class

void Stamp(SystickItem& item, std::uint32_t tick) {
  item.Tick(tick);
}
template <typename T>
void Stamp(T& item, std::uint32_t tick) {
  if constexpr (requires { item.tick; }) item.tick = tick;
}

template <typename T>
constexpr Publication Row(e_Process server, Publication::Kind kind, unsigned int id, const char* source) {
  return {server,
          kind,
          id,
          source,
          []() -> std::unique_ptr<Item> {
            auto item = std::make_unique<T>();
            Begin(*item);
            return item;
          },
          [](const Item& item) { return Describe(static_cast<const T&>(item)); },
          [](Item& item, std::uint32_t tick) { Stamp(static_cast<T&>(item), tick); }};
}

template <typename T>
constexpr Publication Published(e_Process server, unsigned int id, const char* source) {
  return Row<T>(server, Publication::kItem, id, source);
}

template <typename T>
constexpr Publication Message(e_Process server, unsigned int type, const char* source) {
  return Row<T>(server, Publication::kMessage, type, source);
}

template <typename T, void (*kSet)(T&, const Words&)>
void Apply(Item& item, const Words& words) {
  kSet(static_cast<T&>(item), words);
}

template <typename T, void (*kAdvance)(T&, double)>
void Advance(Item& item, double seconds) {
  kAdvance(static_cast<T&>(item), seconds);
}

constexpr auto kItem = Publication::kItem;
constexpr auto kMessage = Publication::kMessage;

const Publication kPublications[] = {
    Published<SystickItem>(e_Process_StateMgr, StateMgrClient::kRecordStart, "record-start"),
    Published<SystickItem>(e_Process_StateMgr, StateMgrClient::kRecordStop, "record-stop"),
    Published<SystickItem>(e_Process_StateMgr, StateMgrClient::kEnterCovertMode, "covert-on"),
    Published<SystickItem>(e_Process_StateMgr, StateMgrClient::kExitCovertMode, "covert-off"),
    Published<VehicleInfo>(e_Process_ConfigMgr, ConfigClient::kVehicleInfo, "vehicle"),
    Published<SystemInfo>(e_Process_ConfigMgr, ConfigClient::kSystemInfo, "system"),
    Published<DepartmentInfo>(e_Process_ConfigMgr, ConfigClient::kDepartmentInfo, "department"),
    Published<Officer>(e_Process_ConfigMgr, ConfigClient::kOfficer, "officer"),
    Published<VideoRecordingSettings>(e_Process_ConfigMgr, ConfigClient::kVideoRecordingSettings,
                                      "recording"),
    Published<FpgaExternalEventItem>(e_Process_Fpga, FpgaClient::kExternalEvent, "input"),
    Published<GpsStatusItem>(e_Process_GpsHal, GpsHalClient::kStatus, "gps"),
    Published<RadarItem>(e_Process_RadarHal, RadarHalClient::kRadar, "radar"),
    Published<MicStatusResponse>(e_Process_MicMgr, MicClient::kStatus, "mic"),
    Message<MicMessage>(e_Process_MicMgr, MetadataMgrMsg_MicState, "mic-message"),
    Published<VideoMgrCameraItem>(e_Process_VideoMgr, VideoMgrClient::kCamera, "camera-entries"),
    Published<VideoMgrStreamQualityItem>(e_Process_VideoMgr, VideoMgrClient::kStreamQuality, "quality"),
    Message<StateMessage>(e_Process_VideoMgr, MetadataMgrMsg_VideoStreamState, "stream"),
    Message<StateMessage>(e_Process_VideoMgr, MetadataMgrMsg_CameraState, "camera"),
    Published<CrashItem>(e_Process_AccelHal, AccelHalClient::kCrash, "crash"),
    Published<TempStatus>(e_Process_TempHal, TempHalClient::kStatus, "temp"),
    Published<LiveStream>(e_Process_ExternalMgr, ExternalMgrApi::kFirstStreamState, "live-0"),
    Published<LiveStream>(e_Process_ExternalMgr, ExternalMgrApi::kFirstStreamState + 1, "live-1"),
    Published<LiveStream>(e_Process_ExternalMgr, ExternalMgrApi::kFirstStreamState + 2, "live-2"),
    Published<LiveStream>(e_Process_ExternalMgr, ExternalMgrApi::kFirstStreamState + 3, "live-3"),
    Published<LiveStream>(e_Process_ExternalMgr, ExternalMgrApi::kFirstStreamState + 4, "live-4"),
    Published<LiveStream>(e_Process_ExternalMgr, ExternalMgrApi::kFirstStreamState + 5, "live-5"),
};

// clang-format off
constexpr Change kChanges[] = {
    {"record start", e_Process_StateMgr, kItem, StateMgrClient::kRecordStart, nullptr},
    {"record stop", e_Process_StateMgr, kItem, StateMgrClient::kRecordStop, nullptr},
    {"covert on", e_Process_StateMgr, kItem, StateMgrClient::kEnterCovertMode, nullptr},
    {"covert off", e_Process_StateMgr, kItem, StateMgrClient::kExitCovertMode, nullptr},
    {"config vehicle", e_Process_ConfigMgr, kItem, ConfigClient::kVehicleInfo, Apply<VehicleInfo, SetVehicle>},
    {"config system", e_Process_ConfigMgr, kItem, ConfigClient::kSystemInfo, Apply<SystemInfo, SetSystem>},
    {"config department", e_Process_ConfigMgr, kItem, ConfigClient::kDepartmentInfo,
     Apply<DepartmentInfo, SetDepartment>},
    {"config officer", e_Process_ConfigMgr, kItem, ConfigClient::kOfficer, Apply<Officer, SetOfficer>},
    {"config recording", e_Process_ConfigMgr, kItem, ConfigClient::kVideoRecordingSettings,
     Apply<VideoRecordingSettings, SetRecording>},
    {"input", e_Process_Fpga, kItem, FpgaClient::kExternalEvent, Apply<FpgaExternalEventItem, SetInputs>},
    {"gps fix", e_Process_GpsHal, kItem, GpsHalClient::kStatus, Apply<GpsStatusItem, SetGpsFix>},
    {"gps none", e_Process_GpsHal, kItem, GpsHalClient::kStatus, Apply<GpsStatusItem, LoseGps>},
    {"radar", e_Process_RadarHal, kItem, RadarHalClient::kRadar, Apply<RadarItem, SetRadar>},
    {"radar none", e_Process_RadarHal, kItem, RadarHalClient::kRadar, Apply<RadarItem, LoseRadar>},
    {"mic", e_Process_MicMgr, kItem, MicClient::kStatus, Apply<MicStatusResponse, SetMic>},
    {"mic message", e_Process_MicMgr, kMessage, MetadataMgrMsg_MicState, Apply<MicMessage, SetMicMessage>},
    {"camera entries", e_Process_VideoMgr, kItem, VideoMgrClient::kCamera,
     Apply<VideoMgrCameraItem, SetCameraEntries>},
    {"quality", e_Process_VideoMgr, kItem, VideoMgrClient::kStreamQuality,
     Apply<VideoMgrStreamQualityItem, SetQuality>},
    {"stream", e_Process_VideoMgr, kMessage, MetadataMgrMsg_VideoStreamState, Apply<StateMessage, SetState>},
    {"camera", e_Process_VideoMgr, kMessage, MetadataMgrMsg_CameraState, Apply<StateMessage, SetState>},
    {"crash", e_Process_AccelHal, kItem, AccelHalClient::kCrash, Apply<CrashItem, SetCrash>},
    {"temp", e_Process_TempHal, kItem, TempHalClient::kStatus, Apply<TempStatus, SetTemperature>},
    {"live", e_Process_ExternalMgr, kItem, ExternalMgrApi::kFirstStreamState, Apply<LiveStream, SetLive>, true},
};
// clang-format on

constexpr Reading kReadings[] = {
    {"gps rate", e_Process_GpsHal, GpsHalClient::kStatus, Advance<GpsStatusItem, FollowTrack>},
    {"radar rate", e_Process_RadarHal, RadarHalClient::kRadar, Advance<RadarItem, WatchTraffic>},
    {"mic rate", e_Process_MicMgr, MicClient::kStatus, Advance<MicStatusResponse, AsItIs>},
    {"temp rate", e_Process_TempHal, TempHalClient::kStatus, Advance<TempStatus, WarmUp>},
};

}  // namespace

std::span<const Publication> Publications() {
  return kPublications;
}

std::span<const Change> Changes() {
  return kChanges;
}

std::span<const Reading> Readings() {
  return kReadings;
}
