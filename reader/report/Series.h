#pragma once

#include <cstdint>
#include <vector>

namespace reader {

class JsonWriter;

// A value over time for a picture: minimum and maximum of each interval. Intervals grow with the run, so
// their number stays within what a picture can show.
class Series {
 public:
  // A time before the previous one is replaced by the previous one.
  void Add(std::int64_t ms, double value);
  // Breaks the line: the value is unknown until the next Add.
  void Break() { broken_ = true; }
  bool Empty() const { return points_.empty(); }
  // Writes "widthMs", the length of the intervals (1: nothing was merged), and "t", "min" and "max" with null
  // where the line breaks. Two values more than `gapMs` apart also break the line, unless `gapMs` is 0.
  void Write(double gapMs, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 2400;
  struct Point {
    std::int64_t firstMs;
    std::int64_t lastMs;
    double lowest;
    double highest;
    bool begins;  // a line begins here
  };

  bool SameStretch(const Point& point, std::int64_t ms) const {
    return point.firstMs / widthMs_ == ms / widthMs_;
  }
  static void Merge(const Point& from, Point& into);
  void Coarsen();

  std::vector<Point> points_;
  std::int64_t widthMs_ = 1;
  bool broken_ = true;
};

}  // namespace reader
