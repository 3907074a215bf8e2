#pragma once

#include <cstdint>

#include "system/Systick.h"

// The tick that stands for a time since boot.
inline unsigned int TickOf(std::int64_t milliseconds) {
  const auto tick = static_cast<std::uint32_t>(milliseconds);
  return tick == Systick::kUnavailable ? tick - 1 : tick;
}
