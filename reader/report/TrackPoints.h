#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "GpsFix.h"

namespace reader {

class JsonWriter;

// The track of a vehicle for a picture. Leaves out positions close to the previous point. The limit for
// "close" grows with the track, so the number of points stays within what a picture can show.
class TrackPoints {
 public:
  void Add(std::int64_t ms, const GpsFix& fix);
  // Breaks the track: the next position begins a new line.
  void Break();
  // Writes an array of lines: "t", "lat" and "lon" (ten-thousandths of a minute), and "stayMs", the time for
  // which the vehicle stayed close to the point.
  void Write(const char* name, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 3000;
  struct Point {
    std::int64_t ms;
    std::int64_t latitude;
    std::int64_t longitude;
    bool begins;  // a line begins here
    std::int64_t stayMs = 0;
  };

  bool IsClose(const Point& a, const Point& b) const;
  void Append(const Point& point);
  void Coarsen();

  std::vector<Point> points_;
  std::optional<Point> left_;  // the last position, if it was left out
  double closeE4min_ = 1;
  bool broken_ = true;
};

}  // namespace reader
