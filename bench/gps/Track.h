#pragma once

#include <cstdint>

#include "items/GpsStatusItem.h"

namespace bench {

// The track of the bench vehicle: laps of twenty seconds. In each it speeds up, turns right, drives on,
// brakes and stands. It depends on the drive's time alone.
class Track {
 public:
  struct Point {
    double latitude = 42.3601;    // degrees, negative to the south
    double longitude = -71.0589;  // negative to the west
    double speedKmh = 0;
    double courseDegrees = 40;
    double altitudeMetres = 12;
  };

  // The point at this time of the drive, in seconds. The time never goes back.
  const Point& At(double seconds);

 private:
  std::int64_t steps_ = 0;
  Point point_;
};

// Fills in place, speed, course, altitude and a fix.
void PutPoint(GpsStatusItem& item, const Track::Point& point);

// The wall clock's date and time of day.
void PutUtc(GpsStatusItem& item);

}  // namespace bench
