#pragma once

#include <cstdint>

#include "Row.h"

namespace reader {

// Position and motion from one record of table gps.
struct GpsFix {
  std::int64_t utcMs = kNoUtc;
  std::int64_t latitudeE4min = 0;
  std::int64_t longitudeE4min = 0;
  bool hasAltitude = false;
  std::int64_t altitudeDm = 0;
  std::int64_t speedDeciKmh = 0;
  std::int64_t courseDeciDeg = 0;
  std::int64_t quality = 0;
  std::int64_t dimensions = 0;
  std::int64_t satellites = 0;

  double Latitude() const { return static_cast<double>(latitudeE4min) / 600'000; }
  double Longitude() const { return static_cast<double>(longitudeE4min) / 600'000; }
};

// What a record says about the position.
struct GpsReading {
  bool hasFix = false;    // `fix` is a valid position
  bool losesFix = false;  // the fix is lost at this record
  GpsFix fix;
};
GpsReading ReadGps(const Row& row);

// Tick of the event, in 64 bits: the sender tick if the row's UTC comes from the sender, else the arrival
// tick.
std::int64_t EventTick(const Row& row);

}  // namespace reader
