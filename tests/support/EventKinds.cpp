#include "support/EventKinds.h"

#include <algorithm>
#include <string_view>

#include "FollowedServers.h"
#include "Publications.h"
#include "StreamingLvsStateItem.h"
#include "items/ConfigurationItems.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
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

std::string LiveStream() {
  return Filled<ExternalMgrApi::StreamingLvsStateItem>([](ExternalMgrApi::StreamingLvsStateItem& item) {
    item.enabled.Value(true);
    item.camera.Value(1);
    item.address.Value("192.168.100.200");
    item.port.Value(8554);
  });
}

// Payloads that differ from the first value that the bench publishes of the item.
std::string PayloadOf(const bench::Publication& publication) {
  const std::string_view name = publication.source->name;
  if (name == "input") {
    return Filled<FpgaExternalEventItem>([](FpgaExternalEventItem& item) {
      item.changedMask = FpgaExternalEventItem::kBrakes;
      item.tick = kTick;
    });
  }
  if (name == "gps") return Gps();
  if (name == "vehicle") return Texts<VehicleInfo>();
  if (name == "system") return Texts<SystemInfo>();
  if (name == "department") return Texts<DepartmentInfo>();
  if (name == "officer") return Texts<Officer>();
  if (name.starts_with("live-")) return LiveStream();
  const auto item = publication.make();
  publication.stamp(*item, kTick);
  return Encoded(*item);
}

std::vector<EventKind> MakeKinds() {
  std::vector<EventKind> kinds = {
      {"RecordStartStop", MetadataMgrMsg_RecordStartStop, MetadataMgr::RecordStartStopHandler,
       Words({kTick}, {1})},
      {"Bookmark", MetadataMgrMsg_Bookmark, MetadataMgr::BookmarkHandler, Words({kTick})},
      {"MicState", MetadataMgrMsg_MicState, MetadataMgr::MicStateChangedHandler, Words({kTick, 3}, {1, 1})},
      {"VideoStream", MetadataMgrMsg_VideoStreamState, MetadataMgr::VideoStreamStateChangeHandler,
       Words({kTick, 3, 1})},
      {"Camera", MetadataMgrMsg_CameraState, MetadataMgr::CliCameraStateChangedHandler, Words({kTick, 3, 1})},
  };
  for (const ServerRow& server : servers::kAll) {
    for (const ServedItem& item : server.items) {
      const auto publications = bench::Publications();
      const auto publication =
          std::find_if(publications.begin(), publications.end(),
                       [&item](const bench::Publication& any) { return any.source->name == item.name; });
      kinds.push_back({item.name, item.notificationId, FollowedItemOf(item.notificationId).handler,
                       PayloadOf(*publication)});
    }
  }
  return kinds;
}

}  // namespace

std::string EventKind::Packet() const {
  return Words({type}) + payload;
}

const std::vector<EventKind>& EventKinds() {
  static const std::vector<EventKind> kinds = MakeKinds();
  return kinds;
}

void RegisterEventHandlers(LinxIpc& ipc, void* context) {
  for (const EventKind& kind : EventKinds()) ipc.RegisterHandler(kind.type, kind.handler, context);
}
