#include "Changes.h"

#include <algorithm>

#include "ArgumentTypes.h"
#include "GpsItem.h"
#include "MessagePayloads.h"
#include "SourceTable.h"
#include "StreamingLvsStateItem.h"
#include "Texts.h"
#include "Track.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"

namespace bench {

namespace {

using LiveStream = ExternalMgrApi::StreamingLvsStateItem;

// ---- Arguments. The parser of the line has checked them

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

// ---- Values of one item class

template <typename T>
void SetTextsOf(T& item, const Words& words) {
  SetTexts(item, Text(words[0]), Text(words[1]));
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

template <typename T, void (*kSet)(T&, const Words&)>
void Apply(Item& item, const Words& words) {
  kSet(static_cast<T&>(item), words);
}

constexpr Change kChanges[] = {
    {"record start", SourceNamed("record-start"), nullptr},
    {"record stop", SourceNamed("record-stop"), nullptr},
    {"covert on", SourceNamed("covert-on"), nullptr},
    {"covert off", SourceNamed("covert-off"), nullptr},
    {"config vehicle", SourceNamed("vehicle"), Apply<VehicleInfo, SetTextsOf<VehicleInfo>>},
    {"config system", SourceNamed("system"), Apply<SystemInfo, SetTextsOf<SystemInfo>>},
    {"config department", SourceNamed("department"), Apply<DepartmentInfo, SetTextsOf<DepartmentInfo>>},
    {"config officer", SourceNamed("officer"), Apply<Officer, SetTextsOf<Officer>>},
    {"config recording", SourceNamed("recording"), Apply<VideoRecordingSettings, SetRecording>},
    {"input", SourceNamed("input"), Apply<FpgaExternalEventItem, SetInputs>},
    {"gps fix", SourceNamed("gps"), Apply<GpsStatusItem, SetGpsFix>},
    {"gps none", SourceNamed("gps"), Apply<GpsStatusItem, LoseGps>},
    {"radar", SourceNamed("radar"), Apply<RadarItem, SetRadar>},
    {"radar none", SourceNamed("radar"), Apply<RadarItem, LoseRadar>},
    {"mic", SourceNamed("mic"), Apply<MicStatusResponse, SetMic>},
    {"mic message", SourceNamed("mic-message"), Apply<MicMessage, SetMicMessage>},
    {"camera entries", SourceNamed("camera-entries"), Apply<VideoMgrCameraItem, SetCameraEntries>},
    {"quality", SourceNamed("quality"), Apply<VideoMgrStreamQualityItem, SetQuality>},
    {"stream", SourceNamed("stream"), Apply<StateMessage, SetState>},
    {"camera", SourceNamed("camera"), Apply<StateMessage, SetState>},
    {"crash", SourceNamed("crash"), Apply<CrashItem, SetCrash>},
    {"temp", SourceNamed("temp"), Apply<TempStatus, SetTemperature>},
    {"live", SourceNamed("live-0"), Apply<LiveStream, SetLive>, true},
};

}  // namespace

std::span<const Change> Changes() {
  return kChanges;
}

}  // namespace bench
