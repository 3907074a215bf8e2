#pragma once

#include <cstdint>

#include "items/GpsStatusItem.h"

namespace bench {

// The track of the bench vehicle: laps of twenty seconds. In each lap it speeds up, turns right, drives on,
// brakes and stands. The track depends only on the time of the drive.
class Track {
 public:
  struct Point {
    double latitude = 42.3601;    // degrees, negative to the south
    double longitude = -71.0589;  // negative to the west
    double speedKmh = 0;
    double courseDegrees = 40;
    double altitudeMetres = 12;
  };

  // The point at a time of the drive, in seconds. The time must not go back.
  const Point& At(double seconds);

 private:
  std::int64_t steps_ = 0;
  Point point_;
};

// Sets position, speed, course, altitude and a fix.
void PutPoint(GpsStatusItem& item, const Track::Point& point);

// Sets date and time of day from the wall clock.
void PutUtc(GpsStatusItem& item);

}  // namespace bench
