#pragma once

#include "items/RecordItem.h"

// The vehicle's discrete inputs. Each has the same bit in both masks.
class FpgaExternalEventItem : public RecordItem<FpgaExternalEventItem> {
 public:
  static constexpr std::uint32_t kIgnition = 0x00002000;
  static constexpr std::uint32_t kAux = 0x00004000;
  static constexpr std::uint32_t kLights = 0x00008000;
  static constexpr std::uint32_t kBrakes = 0x00010000;
  static constexpr std::uint32_t kSiren = 0x00020000;
  static constexpr std::uint32_t kDoorOpen = 0x00080000;
  static constexpr std::uint32_t kAllInputs = 0x000BE000;

  std::uint32_t changedMask = 0;  // inputs that changed in this event
  std::uint32_t inputLevels = 0;  // inputs that are active now
  std::uint32_t reserved = 0;
  std::uint32_t tick = 0;

  static constexpr auto Fields() {
    return std::make_tuple(&FpgaExternalEventItem::changedMask, &FpgaExternalEventItem::inputLevels,
                           &FpgaExternalEventItem::reserved, &FpgaExternalEventItem::tick);
  }
};
