#pragma once

#include <cstdint>

#include "items/RecordItem.h"

namespace bench {

// Payloads of the messages that servers send to MetadataMgr without a subscription.

struct StateMessage : RecordItem<StateMessage> {
  std::uint32_t tick = 0;
  std::uint32_t number = 0;  // stream or camera
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

}  // namespace bench
