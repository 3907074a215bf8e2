#include "Publications.h"

#include "Describe.h"
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

// ---- Values at the start

template <typename T>
void Begin(T& /*item*/) {}

void Begin(RadarItem& item) {
  item.status = 0;  // no traffic
}
void Begin(VehicleInfo& item) {
  SetTexts(item, "unit-1", "BENCH 1");
}
void Begin(SystemInfo& item) {
  SetTexts(item, "bench", "1.0");
}
void Begin(DepartmentInfo& item) {
  SetTexts(item, "Bench Police", "Patrol");
}
void Begin(Officer& item) {
  SetTexts(item, "A. Driver", "100");
}
void Begin(VideoRecordingSettings& item) {
  item.preEventSeconds = 30;
  item.postEventSeconds = 10;
  item.widthPixels = 1280;
  item.heightPixels = 720;
  item.framesPerSecond = 30;
  item.bitRateKbps = 4000;
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
constexpr Publication Row(const Source* source) {
  return {source,
          []() -> std::unique_ptr<Item> {
            auto item = std::make_unique<T>();
            Begin(*item);
            return item;
          },
          [](const Item& item) { return Describe(static_cast<const T&>(item)); },
          [](Item& item, std::uint32_t tick) { Stamp(static_cast<T&>(item), tick); }};
}

constexpr Publication kPublications[] = {
    Row<SystickItem>(SourceNamed("record-start")),
    Row<SystickItem>(SourceNamed("record-stop")),
    Row<SystickItem>(SourceNamed("covert-on")),
    Row<SystickItem>(SourceNamed("covert-off")),
    Row<VehicleInfo>(SourceNamed("vehicle")),
    Row<SystemInfo>(SourceNamed("system")),
    Row<DepartmentInfo>(SourceNamed("department")),
    Row<Officer>(SourceNamed("officer")),
    Row<VideoRecordingSettings>(SourceNamed("recording")),
    Row<FpgaExternalEventItem>(SourceNamed("input")),
    Row<GpsStatusItem>(SourceNamed("gps")),
    Row<RadarItem>(SourceNamed("radar")),
    Row<MicStatusResponse>(SourceNamed("mic")),
    Row<MicMessage>(SourceNamed("mic-message")),
    Row<VideoMgrCameraItem>(SourceNamed("camera-entries")),
    Row<VideoMgrStreamQualityItem>(SourceNamed("quality")),
    Row<StateMessage>(SourceNamed("stream")),
    Row<StateMessage>(SourceNamed("camera")),
    Row<CrashItem>(SourceNamed("crash")),
    Row<TempStatus>(SourceNamed("temp")),
    Row<LiveStream>(SourceNamed("live-0")),
    Row<LiveStream>(SourceNamed("live-1")),
    Row<LiveStream>(SourceNamed("live-2")),
    Row<LiveStream>(SourceNamed("live-3")),
    Row<LiveStream>(SourceNamed("live-4")),
    Row<LiveStream>(SourceNamed("live-5")),
};
static_assert(std::size(kPublications) == std::size(kSources), "each source has a publication");

}  // namespace

std::span<const Publication> Publications() {
  return kPublications;
}

}  // namespace bench
