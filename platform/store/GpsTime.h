#pragma once

#include <cstdint>
#include <optional>

class GpsStatusItem;

namespace store {

// Milliseconds since 1970-01-01T00:00:00Z by a GPS reading. Empty if the reading has no fix, is simulated, or
// has an impossible date or time.
std::optional<std::int64_t> UtcMsOf(const GpsStatusItem& reading);

}  // namespace store
