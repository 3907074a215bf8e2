#pragma once

#include <cstdint>

#include "system/Systick.h"

// The system tick of a time since boot; never kUnavailable.
inline unsigned int TickOf(std::int64_t milliseconds) {
  const auto tick = static_cast<std::uint32_t>(milliseconds);
  return tick == Systick::kUnavailable ? tick - 1 : tick;
}
