#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "GpsFix.h"

namespace reader {

class JsonWriter;

// The way of a vehicle for a picture. Positions that lie close together are left out, the closer ones
// first, so that there are never more than a picture can show.
class TrackPoints {
 public:
  void Add(std::int64_t ms, const GpsFix& fix);
  // The way is not known from here to the next position.
  void Break();
  // An array of lines, each with "t", "lat" and "lon" (ten-thousandths of a minute), and "stayMs": how long
  // the vehicle stayed so close to the point that later positions were left out.
  void Write(const char* name, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 3000;
  struct Point {
    std::int64_t ms;
    std::int64_t latitude;
    std::int64_t longitude;
    bool begins;  // a line
    std::int64_t stayMs = 0;
  };

  bool IsClose(const Point& a, const Point& b) const;
  void Append(const Point& point);
  void Coarsen();

  std::vector<Point> points_;
  std::optional<Point> left_;  // the last one, where it was left out
  double closeE4min_ = 1;
  bool broken_ = true;
};

}  // namespace reader
