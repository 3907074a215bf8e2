#include "clients/ExternalMgrApi.h"

#include "items/RecordItem.h"
#include "system/KvGetenv.h"

namespace {

// The encoding of a StreamingLvsStateItem. Each process that uses that class defines it itself.
struct LiveStreamOnTheWire : RecordItem<LiveStreamOnTheWire> {
  bool enabled = false;
  bool highQuality = false;
  std::uint16_t camera = 0;
  field::Text address;
  std::uint16_t port = 0;

  static constexpr auto Fields() {
    return std::make_tuple(&LiveStreamOnTheWire::enabled, &LiveStreamOnTheWire::highQuality,
                           &LiveStreamOnTheWire::camera, &LiveStreamOnTheWire::address,
                           &LiveStreamOnTheWire::port);
  }
};

}  // namespace

bool ExternalMgrApi::InLvsForceHqStreaming() {
  static const bool forced = KvGetenv("LVS_FORCE_HQ") != nullptr;
  return forced;
}

std::unique_ptr<Item> ExternalMgrApi::ScratchItem(const Item& /*item*/) const {
  return std::make_unique<LiveStreamOnTheWire>();
}
