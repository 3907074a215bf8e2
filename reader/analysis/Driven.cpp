#include "Driven.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace reader {

// Sines and cosines in single precision: their error is a centimetre in 100 km, and those in double precision
// end a program on emulated PowerPC.
double DistanceMetres(const GpsFix& from, const GpsFix& to) {
  constexpr double kEarthRadiusMetres = 6'371'008.8;
  const auto radians = [](double degrees) { return static_cast<float>(degrees * std::numbers::pi / 180); };
  const double sinLatitude = std::sin(radians(to.Latitude() - from.Latitude()) / 2);
  const double sinLongitude = std::sin(radians(to.Longitude() - from.Longitude()) / 2);
  const double cosines = std::cos(radians(from.Latitude())) * std::cos(radians(to.Latitude()));
  const double h = sinLatitude * sinLatitude + cosines * sinLongitude * sinLongitude;
  return 2 * kEarthRadiusMetres * std::asin(std::sqrt(std::min(h, 1.0)));
}

void Driven::Add(TrackFollower::Step step, const TrackFollower& follower, std::int64_t tick) {
  constexpr double kMostMetresPerMs = 0.1;  // 360 km/h
  constexpr double kLeastLeapMetres = 50;
  if (step != TrackFollower::Step::kBegin && step != TrackFollower::Step::kOn) return;
  const GpsFix& fix = *follower.Last();
  if (step == TrackFollower::Step::kOn && any_) {
    const double metres = DistanceMetres(last_, fix);
    const auto ms = static_cast<double>(std::max<std::int64_t>(WithinTime(tick) - lastTick_, 0));
    if (metres > kLeastLeapMetres && metres > kMostMetresPerMs * ms) {
      ++leaps_;
      leapMetres_ += metres;
    } else {
      metres_ += metres;
    }
  }
  any_ = true;
  last_ = fix;
  lastTick_ = WithinTime(tick);
}

}  // namespace reader
