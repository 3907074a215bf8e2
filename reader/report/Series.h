#pragma once

#include <cstdint>
#include <vector>

namespace reader {

class JsonWriter;

// A value over time for a picture: lowest and highest of each stretch of time. The stretches become
// longer as values come, so that there are never more than a picture can show.
class Series {
 public:
  // Times never go back; one that does counts as the time before it.
  void Add(std::int64_t ms, double value);
  // The value is not known from here to the next one.
  void Break() { broken_ = true; }
  bool Empty() const { return points_.empty(); }
  // "widthMs", the length of the stretches (1: nothing was merged), and "t", "min" and "max", with null where
  // the line is broken: also where two values are further apart than `gapMs`, if that is not 0.
  void Write(double gapMs, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 2400;
  struct Point {
    std::int64_t firstMs;
    std::int64_t lastMs;
    double lowest;
    double highest;
    bool begins;  // a line
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
