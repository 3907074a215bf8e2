#include "TrackPoints.h"

#include <algorithm>

#include "JsonWriter.h"

namespace reader {

void TrackPoints::Add(std::int64_t ms, const GpsFix& fix) {
  const Point point{ms, fix.latitudeE4min, fix.longitudeE4min, broken_};
  if (!broken_ && IsClose(points_.back(), point)) {
    points_.back().stayMs = ms - points_.back().ms;
    left_ = point;
    return;
  }
  broken_ = false;
  Append(point);
}

// Keeps the last position of the line.
void TrackPoints::Break() {
  if (left_) Append(*left_);
  broken_ = true;
}

void TrackPoints::Append(const Point& point) {
  left_.reset();
  points_.push_back(point);
  while (points_.size() > kMost) Coarsen();
}

// Overstates distances east or west away from the equator, which only keeps more points.
bool TrackPoints::IsClose(const Point& a, const Point& b) const {
  const auto north = static_cast<double>(a.latitude - b.latitude);
  const auto east = static_cast<double>(a.longitude - b.longitude);
  return north * north + east * east < closeE4min_ * closeE4min_;
}

void TrackPoints::Coarsen() {
  closeE4min_ *= 2;
  std::size_t kept = 0;
  bool begins = false;  // a line begins, but its first point was left out
  for (std::size_t i = 1; i < points_.size(); ++i) {
    begins |= points_[i].begins;
    if (IsClose(points_[kept], points_[i])) {
      if (!begins) points_[kept].stayMs = points_[i].ms + points_[i].stayMs - points_[kept].ms;
      continue;
    }
    points_[++kept] = points_[i];
    points_[kept].begins = begins;
    begins = false;
  }
  points_.resize(kept + 1);
  broken_ |= begins;
}

void TrackPoints::Write(const char* name, JsonWriter& json) const {
  std::vector<Point> points = points_;
  if (left_) points.push_back(*left_);
  json.Array(name);
  for (auto begin = points.begin(); begin != points.end();) {
    const auto end = std::find_if(begin + 1, points.end(), [](const Point& point) { return point.begins; });
    const auto write = [&](const char* column, std::int64_t Point::*value) {
      json.Array(column);
      for (auto point = begin; point != end; ++point) json.Number(nullptr, (*point).*value);
      json.EndArray();
    };
    json.Object();
    write("t", &Point::ms);
    write("lat", &Point::latitude);
    write("lon", &Point::longitude);
    write("stayMs", &Point::stayMs);
    json.EndObject();
    begin = end;
  }
  json.EndArray();
}

}  // namespace reader
