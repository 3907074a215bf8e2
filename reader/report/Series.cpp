#include "Series.h"

#include <algorithm>

#include "JsonWriter.h"

namespace reader {

void Series::Add(std::int64_t ms, double value) {
  if (!points_.empty()) ms = std::max(ms, points_.back().lastMs);
  const Point point{ms, ms, value, value, broken_};
  broken_ = false;
  if (widthMs_ > 1 && SameStretch(points_.back(), ms)) {
    Merge(point, points_.back());
    return;
  }
  points_.push_back(point);
  while (points_.size() > kMost) Coarsen();
}

void Series::Merge(const Point& from, Point& into) {
  into.lastMs = from.lastMs;
  into.lowest = std::min(into.lowest, from.lowest);
  into.highest = std::max(into.highest, from.highest);
}

void Series::Coarsen() {
  widthMs_ *= 2;
  std::size_t kept = 0;
  for (std::size_t i = 1; i < points_.size(); ++i) {
    if (SameStretch(points_[kept], points_[i].firstMs)) {
      Merge(points_[i], points_[kept]);
    } else {
      points_[++kept] = points_[i];
    }
  }
  points_.resize(kept + 1);
}

void Series::Write(double gapMs, JsonWriter& json) const {
  const auto begins = [this, gapMs](std::size_t i) {
    return i > 0 && (points_[i].begins ||
                     (gapMs > 0 && static_cast<double>(points_[i].firstMs - points_[i - 1].lastMs) > gapMs));
  };
  const auto write = [&](const char* name, auto&& one) {
    json.Array(name);
    for (std::size_t i = 0; i < points_.size(); ++i) {
      if (begins(i)) json.Null(nullptr);
      one(points_[i]);
    }
    json.EndArray();
  };
  json.Number("widthMs", widthMs_);
  write("t", [&json](const Point& point) { json.Number(nullptr, point.firstMs); });
  write("min", [&json](const Point& point) { json.Decimal(nullptr, point.lowest); });
  write("max", [&json](const Point& point) { json.Decimal(nullptr, point.highest); });
}

}  // namespace reader
