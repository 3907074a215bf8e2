#pragma once

#include <cstdint>

#include "TrackFollower.h"

namespace reader {

// Distance that the vehicle drove, from all its fixes. Leaps (more than 50 m at more than 360 km/h) are
// counted apart and add nothing to the distance.
class Driven {
 public:
  // Call after each record that the follower took.
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

// Great-circle distance, by the haversine formula.
double DistanceMetres(const GpsFix& from, const GpsFix& to);

}  // namespace reader
