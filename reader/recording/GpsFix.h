#pragma once

#include <cstdint>

#include "Row.h"

namespace reader {

// Where and how fast the vehicle was, by one record of table gps.
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

// What a record says of the position.
struct GpsReading {
  bool hasFix = false;    // the receiver had found `fix`, which is on earth
  bool losesFix = false;  // there is no fix from here on
  GpsFix fix;
};
GpsReading ReadGps(const Row& row);

// The tick of the event: as the sender told it, else of the arrival; in 64 bits as the arrival's.
std::int64_t EventTick(const Row& row);

}  // namespace reader
