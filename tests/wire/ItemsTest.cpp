// The item classes read and write the items of docs/wire.md.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "StreamingLvsStateItem.h"
#include "WireDocument.h"
#include "ipc/IpcMessage.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "support/Hex.h"

namespace {

using std::tie;
using std::tuple;

constexpr int kTick = 1000000;

// Reads an item from the bytes of the document. Encoding it must give the same bytes.
template <typename T>
T Item(const std::string& name) {
  static WireDocument document(WIRE_DOCUMENT);
  std::string bytes = document.Bytes(name, "item");
  IpcMessage message;
  EXPECT_EQ(message.Allocate(1, static_cast<unsigned int>(bytes.size()), bytes.data()), 0);
  T item;
  EXPECT_TRUE(item.DecodeMsg(message)) << name;
  std::string written(item.Size(), '\0');
  (void)item.Encode(reinterpret_cast<unsigned char*>(written.data()));
  EXPECT_EQ(ToHex(written), ToHex(bytes)) << name;
  return item;
}

TEST(WireItems, OfReadingsAreAsTheDocumentSays) {
  using Fpga = FpgaExternalEventItem;
  const auto inputs = Item<Fpga>("FpgaExternalEventItem");
  EXPECT_EQ(tie(inputs.changedMask, inputs.inputLevels, inputs.tick),
            tuple(Fpga::kSiren | Fpga::kLights, Fpga::kLights | Fpga::kIgnition, kTick));
  const auto gps = Item<GpsStatusItem>("GpsStatusItem");
  EXPECT_EQ(tie(gps.latitudeDegrees, gps.latitudeMinutes, gps.latitudeMinuteFraction, gps.latitudeHemisphere),
            tuple(42, 21, 6060, GpsStatusItem::kNorthOrEast));
  EXPECT_EQ(
      tie(gps.longitudeDegrees, gps.longitudeMinutes, gps.longitudeMinuteFraction, gps.longitudeHemisphere),
      tuple(71, 3, 5340, 0));
  EXPECT_EQ(tie(gps.utcDate, gps.utcTimeOfDayMs, gps.valid, gps.tick), tuple(20240229, 38270961, 1, kTick));
  EXPECT_EQ(tie(gps.speedDeciKmh, gps.speedDeciKnots, gps.courseDeciDegrees, gps.altitudeDeciMetres),
            tuple(543, 293, 900, -12));
  EXPECT_EQ(tie(gps.quality, gps.fixDimensions, gps.satellitesInView, gps.satellitesUsed, gps.signalDecibels),
            tuple(1, 3, 11, 8, 44));
  const auto radar = Item<RadarItem>("RadarItem");
  EXPECT_EQ(tie(radar.status, radar.patrolSpeedKmh, radar.targetSpeedKmh, radar.fastestSpeedKmh,
                radar.lockedSpeedKmh, radar.tick),
            tuple(1, 54, 120, 131, 128, kTick));
  const auto mics = Item<MicStatusResponse>("MicStatusResponse");
  std::string microphones;
  for (const auto& m : mics)
    microphones += std::to_string(m.mic) + (m.present ? " present " : " ") + (m.active ? "active " : "");
  EXPECT_EQ(tie(microphones, mics.tick), tuple("0 present 3 present active ", kTick));
  const auto temp = Item<TempStatus>("TempStatus");
  EXPECT_EQ(
      tie(temp.sensor3Celsius, temp.sensor2Celsius, temp.sensor1Celsius, temp.sensor0Celsius, temp.tick),
      tuple(-40, 21, 22, 23, kTick));
  const auto crash = Item<CrashItem>("CrashItem");
  EXPECT_EQ(tie(crash.crash, crash.tick), tuple(true, kTick));
}

TEST(WireItems, OfVideoAreAsTheDocumentSays) {
  const auto cameras = Item<VideoMgrCameraItem>("VideoMgrCameraItem");
  std::string states;
  for (const e_CameraState state : cameras.states) states += std::to_string(state) + " ";
  EXPECT_EQ(tie(states, cameras.tick), tuple("1 2 0 0 0 1 0 0 3 ", kTick));
  const auto qualities = Item<VideoMgrStreamQualityItem>("VideoMgrStreamQualityItem");
  std::string streams;
  for (const auto& s : qualities.streams) {
    for (const int value : {s.widthPixels, s.heightPixels, s.framesPerSecond, s.bitRateKbps})
      streams += std::to_string(value) + " ";
  }
  EXPECT_EQ(tie(streams, qualities.tick),
            tuple("1920 1080 30 6000 640 480 30 5999 640 480 30 5998 640 480 30 5997 ", kTick));
  const auto live = Item<ExternalMgrApi::StreamingLvsStateItem>("StreamingLvsStateItem");
  EXPECT_EQ(tuple(live.enabled.Value(), live.highQuality.Value(), live.camera.Value(), live.address.Value(),
                  live.port.Value()),
            tuple(true, false, 2, "10.0.0.5", 8554));
}

TEST(WireItems, OfTheConfigurationAreAsTheDocumentSays) {
  const auto vehicle = Item<VehicleInfo>("VehicleInfo");
  EXPECT_EQ(tie(vehicle.unitId, vehicle.licensePlate), tuple("unit-12", "KV 1234"));
  const auto officer = Item<Officer>("Officer");
  EXPECT_EQ(tie(officer.name, officer.badgeNumber), tuple("Jo Miller", "4711"));
  const auto department = Item<DepartmentInfo>("DepartmentInfo");
  EXPECT_EQ(tie(department.name, department.division), tuple("Police", "Patrol"));
  const auto system = Item<SystemInfo>("SystemInfo");
  EXPECT_EQ(tie(system.deviceName, system.softwareVersion), tuple("recorder", "2.1"));
  const auto video = Item<VideoRecordingSettings>("VideoRecordingSettings");
  EXPECT_EQ(tie(video.preEventSeconds, video.postEventSeconds), tuple(60, 30));
  EXPECT_EQ(tie(video.widthPixels, video.heightPixels, video.framesPerSecond, video.bitRateKbps),
            tuple(1920, 1080, 25, 6000));
}

}  // namespace
