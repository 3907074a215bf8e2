#pragma once

#include <cstdint>

#include "items/GpsStatusItem.h"

namespace bench {

// Fills the GPS item in its units.

constexpr std::int64_t kE4MinutesPerDegree = 600000;  // ten-thousandths of a minute

// Sets the position: ten-thousandths of a minute, negative to the south and west.
void PutPlace(GpsStatusItem& item, std::int64_t latitudeE4Min, std::int64_t longitudeE4Min);

// Sets the position from degrees. Rounding carries from minutes into degrees.
void PutPlaceDegrees(GpsStatusItem& item, double latitude, double longitude);

// Clamps a value to the range of a 16-bit field.
std::uint16_t InField(std::int64_t value);

// Removes the fix. Position and motion keep their last values, as in a receiver that lost its satellites.
void LoseFix(GpsStatusItem& item);

// The item of a receiver that has had no reading yet.
GpsStatusItem NoFix();

}  // namespace bench
