#pragma once

#include <cstdint>

#include "items/GpsStatusItem.h"

namespace bench {

// The units of the GPS item, for all sources of readings.

constexpr std::int64_t kE4MinutesPerDegree = 600000;  // ten-thousandths of a minute

// Fills in the place: ten-thousandths of a minute, negative to the south and west.
void PutPlace(GpsStatusItem& item, std::int64_t latitudeE4Min, std::int64_t longitudeE4Min);

// Fills in the place from degrees, rounded as one number so that it carries.
void PutPlaceDegrees(GpsStatusItem& item, double latitude, double longitude);

// The value, limited to what a field of 16 bits can hold.
std::uint16_t InField(std::int64_t value);

// Takes the fix away. Place and motion stay, as with a receiver that has lost its satellites.
void LoseFix(GpsStatusItem& item);

// The item of a receiver before its first reading.
GpsStatusItem NoFix();

}  // namespace bench
