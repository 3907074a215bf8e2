#pragma once

#include <cstdint>

#include "TrackFollower.h"

namespace reader {

// How far the vehicle drove, by all its fixes. A leap, a step that no vehicle drives (faster than 360 km/h,
// and more than 50 m), is left out and counted.
class Driven {
 public:
  // After each record that the follower has taken.
  void Add(TrackFollower::Step step, const TrackFollower& follower, std::int64_t tick);

  double Metres() const { return metres_; }
  std::int64_t Leaps() const { return leaps_; }
  double LeapMetres() const { return leapMetres_; }
  bool Any() const { return any_; }

 private:
  bool any_ = false;
  GpsFix last_;
  std::int64_t lastTick_ = 0;
  double metres_ = 0;
  double leapMetres_ = 0;
  std::int64_t leaps_ = 0;
};

// Over the sphere, by the haversine formula.
double DistanceMetres(const GpsFix& from, const GpsFix& to);

}  // namespace reader
