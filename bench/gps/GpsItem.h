#pragma once

#include <cstdint>

#include "items/GpsStatusItem.h"

// What the sources of GPS readings have in common: the units of the item.

constexpr std::int64_t kE4MinutesPerDegree = 600000;  // ten-thousandths of a minute

// Fills in the place: ten-thousandths of a minute, negative to the south and west.
void PutPlace(GpsStatusItem& item, std::int64_t latitudeE4Min, std::int64_t longitudeE4Min);

// The same of degrees, rounded as one number so that it carries.
void PutPlaceDegrees(GpsStatusItem& item, double latitude, double longitude);

// What a field can hold of a value in its units.
std::uint16_t InField(std::int64_t value);

// No fix. Place and motion stay as they were, as with a receiver that has lost its satellites.
void LoseFix(GpsStatusItem& item);

// A receiver that has told nothing yet.
GpsStatusItem NoFix();
