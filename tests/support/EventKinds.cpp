#include "support/EventKinds.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "FollowedServers.h"
#include "StreamingLvsStateItem.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/SystickItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "system/BigEndian.h"
#include "system/Servers.h"

namespace {

constexpr unsigned int kTick = 1000;
constexpr const char* kLongText = "A text that is longer than most, as a department may have it";

std::string Words(std::initializer_list<unsigned int> words, std::initializer_list<char> bytes = {}) {
  std::string text;
  for (const unsigned int word : words) {
    unsigned char wire[4];
    PutU32(wire, word);
    text.append(wire, wire + sizeof wire);
  }
  return text.append(bytes);
}

std::string Encoded(const Item& item) {
  std::string bytes(item.Size(), '\0');
  (void)item.Encode(reinterpret_cast<unsigned char*>(bytes.data()));
  return bytes;
}

// The bytes of an item that `fill` has filled.
template <typename T, typename Fill>
std::string Filled(Fill fill) {
  T item;
  fill(item);
  return Encoded(item);
}

template <typename T>
std::string Texts() {
  return Filled<T>([](T& item) {
    const auto [first, second] = T::Fields();
    item.*first = kLongText;
    item.*second = "17";
  });
}

std::string Gps() {
  return Filled<GpsStatusItem>([](GpsStatusItem& item) {
    item.latitudeDegrees = 48;
    item.quality = 1;
    item.speedDeciKmh = 500;
    item.utcDate = 20240229;
    item.tick = kTick;
  });
}

std::string Radar() {
  return Filled<RadarItem>([](RadarItem& item) {
    item.status = 0;
    item.tick = kTick;
  });
}

std::string Mics() {
  return Filled<MicStatusResponse>([](MicStatusResponse& item) {
    for (unsigned int mic = 0; mic < 4; ++mic) item.Add({e_MicrophonePosition{mic}, true, true});
    item.tick = kTick;
  });
}

std::string LiveStream() {
  return Filled<ExternalMgrApi::StreamingLvsStateItem>([](ExternalMgrApi::StreamingLvsStateItem& item) {
    item.enabled.Value(true);
    item.camera.Value(1);
    item.address.Value("192.168.100.200");
    item.port.Value(8554);
  });
}

template <typename T>
std::string WithTick() {
  return Filled<T>([](T& item) { item.tick = kTick; });
}

EventKind Subscribed(const char* name, unsigned int notificationId, std::string payload) {
  return {name, notificationId, FollowedItemOf(notificationId).handler, std::move(payload)};
}

// Aborts, and names the server, when a server has no message here.
std::vector<EventKind> Complete(std::vector<EventKind> kinds) {
  for (const ServerRow& server : servers::kAll) {
    const bool known = std::any_of(kinds.begin(), kinds.end(), [&server](const EventKind& kind) {
      return kind.type == server.items.front().notificationId;
    });
    if (known) continue;
    std::fprintf(stderr, "EventKinds has no message of %s\n", server.name);
    std::abort();
  }
  return kinds;
}

std::vector<EventKind> MakeKinds() {
  const std::string inputs = Encoded([] {
    FpgaExternalEventItem item;
    item.changedMask = FpgaExternalEventItem::kBrakes;
    item.tick = kTick;
    return item;
  }());
  return {
      {"RecordStartStop", MetadataMgrMsg_RecordStartStop, MetadataMgr::RecordStartStopHandler,
       Words({kTick}, {1})},
      {"Bookmark", MetadataMgrMsg_Bookmark, MetadataMgr::BookmarkHandler, Words({kTick})},
      {"MicState", MetadataMgrMsg_MicState, MetadataMgr::MicStateChangedHandler, Words({kTick, 3}, {1, 1})},
      {"VideoStream", MetadataMgrMsg_VideoStreamState, MetadataMgr::VideoStreamStateChangeHandler,
       Words({kTick, 3, 1})},
      {"Camera", MetadataMgrMsg_CameraState, MetadataMgr::CliCameraStateChangedHandler, Words({kTick, 3, 1})},
      Subscribed("RecordStart", MetadataMgrNotice_RecordStart, Encoded(SystickItem(kTick))),
      Subscribed("RecordStop", MetadataMgrNotice_RecordStop, Encoded(SystickItem(kTick))),
      Subscribed("CovertEntered", MetadataMgrNotice_EnterCovertMode, Encoded(SystickItem(kTick))),
      Subscribed("CovertLeft", MetadataMgrNotice_ExitCovertMode, Encoded(SystickItem(kTick))),
      Subscribed("Inputs", MetadataMgrNotice_ExternalEvent, inputs),
      Subscribed("Gps", MetadataMgrNotice_GpsStatus, Gps()),
      Subscribed("Radar", MetadataMgrNotice_Radar, Radar()),
      Subscribed("Microphones", MetadataMgrNotice_MicStatus, Mics()),
      Subscribed("Temperatures", MetadataMgrNotice_Temperatures, WithTick<TempStatus>()),
      Subscribed("Crash", MetadataMgrNotice_Crash, WithTick<CrashItem>()),
      Subscribed("Cameras", MetadataMgrNotice_Cameras, WithTick<VideoMgrCameraItem>()),
      Subscribed("StreamQuality", MetadataMgrNotice_StreamQuality, WithTick<VideoMgrStreamQualityItem>()),
      Subscribed("LiveStream", MetadataMgrNotice_LiveStream0, LiveStream()),
      Subscribed("Vehicle", MetadataMgrNotice_VehicleInfo, Texts<VehicleInfo>()),
      Subscribed("System", MetadataMgrNotice_SystemInfo, Texts<SystemInfo>()),
      Subscribed("Department", MetadataMgrNotice_DepartmentInfo, Texts<DepartmentInfo>()),
      Subscribed("Officer", MetadataMgrNotice_Officer, Texts<Officer>()),
      Subscribed("RecordingSettings", MetadataMgrNotice_VideoRecordingSettings,
                 Encoded(VideoRecordingSettings())),
  };
}

}  // namespace

std::string EventKind::Packet() const {
  return Words({type}) + payload;
}

const std::vector<EventKind>& EventKinds() {
  static const std::vector<EventKind> kinds = Complete(MakeKinds());
  return kinds;
}

void RegisterEventHandlers(LinxIpc& ipc, void* context) {
  for (const EventKind& kind : EventKinds()) ipc.RegisterHandler(kind.type, kind.handler, context);
}
