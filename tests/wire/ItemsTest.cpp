// The items of docs/wire.md are what the item classes write and read.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

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

constexpr std::uint32_t kTick = 1000000;

struct Example {
  const char* name;
  std::shared_ptr<Item> item;
  std::shared_ptr<Item> other;  // of the same class, as it was constructed
};

template <typename T, typename Fill>
Example Of(const char* name, Fill fill) {
  auto item = std::make_shared<T>();
  fill(*item);
  return {name, item, std::make_shared<T>()};
}

std::vector<Example> Examples() {
  return {
      Of<FpgaExternalEventItem>("FpgaExternalEventItem",
                                [](auto& v) {
                                  using Fpga = FpgaExternalEventItem;
                                  v.changedMask = Fpga::kSiren | Fpga::kLights;
                                  v.inputLevels = Fpga::kLights | Fpga::kIgnition;
                                  v.tick = kTick;
                                }),
      Of<GpsStatusItem>("GpsStatusItem",
                        [](auto& v) {
                          v.latitudeDegrees = 42;
                          v.latitudeMinutes = 21;
                          v.latitudeMinuteFraction = 6060;
                          v.latitudeHemisphere = GpsStatusItem::kNorthOrEast;
                          v.longitudeDegrees = 71;
                          v.longitudeMinutes = 3;
                          v.longitudeMinuteFraction = 5340;
                          v.utcDate = 20240229;
                          v.speedDeciKmh = 543;
                          v.speedDeciKnots = 293;
                          v.courseDeciDegrees = 900;
                          v.satellitesInView = 11;
                          v.quality = 1;
                          v.fixDimensions = 3;
                          v.altitudeDeciMetres = -12;
                          v.satellitesUsed = 8;
                          v.signalDecibels = 44;
                          v.utcTimeOfDayMs = 38270961;
                          v.valid = 1;
                          v.tick = kTick;
                        }),
      Of<RadarItem>("RadarItem",
                    [](auto& v) {
                      v.status = 1;
                      v.patrolSpeedKmh = 54;
                      v.targetSpeedKmh = 120;
                      v.fastestSpeedKmh = 131;
                      v.lockedSpeedKmh = 128;
                      v.tick = kTick;
                    }),
      Of<MicStatusResponse>("MicStatusResponse",
                            [](auto& v) {
                              v.Add({e_MicrophonePosition{0}, true, false});
                              v.Add({e_MicrophonePosition{3}, true, true});
                              v.tick = kTick;
                            }),
      Of<TempStatus>("TempStatus",
                     [](auto& v) {
                       v.sensor3Celsius = -40;
                       v.sensor2Celsius = 21;
                       v.sensor1Celsius = 22;
                       v.sensor0Celsius = 23;
                       v.tick = kTick;
                     }),
      Of<CrashItem>("CrashItem",
                    [](auto& v) {
                      v.crash = true;
                      v.tick = kTick;
                    }),
      Of<VideoMgrCameraItem>("VideoMgrCameraItem",
                             [](auto& v) {
                               v.states = {
                                   e_CameraState{1}, e_CameraState{2}, {}, {}, {}, e_CameraState{1}, {}, {},
                                   e_CameraState{3}};
                               v.tick = kTick;
                             }),
      Of<VideoMgrStreamQualityItem>(
          "VideoMgrStreamQualityItem",
          [](auto& v) {
            v.streams = {
                {{1920, 1080, 30, 6000}, {640, 480, 30, 5999}, {640, 480, 30, 5998}, {640, 480, 30, 5997}}};
            v.tick = kTick;
          }),
      Of<VehicleInfo>("VehicleInfo",
                      [](auto& v) {
                        v.unitId = "unit-12";
                        v.licensePlate = "KV 1234";
                      }),
      Of<Officer>("Officer",
                  [](auto& v) {
                    v.name = "Jo Miller";
                    v.badgeNumber = "4711";
                  }),
      Of<DepartmentInfo>("DepartmentInfo",
                         [](auto& v) {
                           v.name = "Police";
                           v.division = "Patrol";
                         }),
      Of<SystemInfo>("SystemInfo",
                     [](auto& v) {
                       v.deviceName = "recorder";
                       v.softwareVersion = "2.1";
                     }),
      Of<VideoRecordingSettings>("VideoRecordingSettings",
                                 [](auto& v) {
                                   v.preEventSeconds = 60;
                                   v.postEventSeconds = 30;
                                   v.widthPixels = 1920;
                                   v.heightPixels = 1080;
                                   v.framesPerSecond = 25;
                                   v.bitRateKbps = 6000;
                                 }),
      Of<ExternalMgrApi::StreamingLvsStateItem>("StreamingLvsStateItem",
                                                [](auto& v) {
                                                  v.enabled.Value(true);
                                                  v.camera.Value(2);
                                                  v.address.Value("10.0.0.5");
                                                  v.port.Value(8554);
                                                }),
  };
}

std::string Encoding(const Item& item) {
  std::string bytes(item.Size(), '\0');
  (void)item.Encode(reinterpret_cast<unsigned char*>(bytes.data()));
  return ToHex(bytes);
}

TEST(WireItems, AreEncodedAndDecodedAsTheDocumentSays) {
  WireDocument document(WIRE_DOCUMENT);
  for (const Example& example : Examples()) {
    SCOPED_TRACE(example.name);
    std::string bytes = document.Packet(example.name, "item").Bytes();
    EXPECT_EQ(Encoding(*example.item), ToHex(bytes));
    IpcMessage message;
    ASSERT_EQ(message.Allocate(1, static_cast<unsigned int>(bytes.size()), bytes.data()), 0);
    EXPECT_TRUE(example.other->DecodeMsg(message));
    EXPECT_EQ(Encoding(*example.other), ToHex(bytes));
  }
}

}  // namespace
