#include "Track.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>

#include "GpsItem.h"

namespace bench {

namespace {

constexpr double kStepsPerSecond = 100;
constexpr double kLapSeconds = 20;
constexpr double kPi = 3.14159265358979323846;
constexpr double kMetresPerDegree = 111320;  // in latitude

// Between two corners speed and direction change evenly.
struct Corner {
  double seconds;
  double speedKmh;
  double turnDegrees;  // since the lap began
};
constexpr Corner kLap[] = {{0, 0, 0},    {5, 54, 0},    {7, 54, 0},     {8, 40, 0},  {11, 36, 90},
                           {13, 72, 90}, {15, 72, 100}, {18.5, 0, 100}, {20, 0, 100}};

double Between(double from, double to, double share) {
  return from + (to - from) * share;
}

std::uint16_t Tenths(double value) {
  return static_cast<std::uint16_t>(std::lround(value * 10));
}

}  // namespace

const Track::Point& Track::At(double seconds) {
  constexpr double kLapSteps = kLapSeconds * kStepsPerSecond;
  while (static_cast<double>(steps_) < seconds * kStepsPerSecond) {
    ++steps_;
    const double time = std::fmod(static_cast<double>(steps_), kLapSteps) / kStepsPerSecond;
    const double laps = std::floor(static_cast<double>(steps_) / kLapSteps);
    const Corner* to = std::find_if(std::begin(kLap) + 1, std::end(kLap) - 1,
                                    [time](const Corner& c) { return time < c.seconds; });
    const Corner* from = to - 1;
    const double share = (time - from->seconds) / (to->seconds - from->seconds);
    point_.speedKmh = Between(from->speedKmh, to->speedKmh, share);
    const double turn =
        Between(from->turnDegrees, to->turnDegrees, share) + laps * std::rbegin(kLap)->turnDegrees;
    point_.courseDegrees = std::fmod(Point().courseDegrees + turn, 360);
    const double metres = point_.speedKmh / 3.6 / kStepsPerSecond;
    const double course = point_.courseDegrees * kPi / 180;
    point_.latitude += metres * std::cos(course) / kMetresPerDegree;
    point_.longitude +=
        metres * std::sin(course) / (kMetresPerDegree * std::cos(point_.latitude * kPi / 180));
  }
  return point_;
}

void PutPoint(GpsStatusItem& item, const Track::Point& point) {
  PutPlaceDegrees(item, point.latitude, point.longitude);
  constexpr double kKmhPerKnot = 1.852;
  item.speedDeciKmh = Tenths(point.speedKmh);
  item.speedDeciKnots = Tenths(point.speedKmh / kKmhPerKnot);
  item.courseDeciDegrees = static_cast<std::uint16_t>(Tenths(point.courseDegrees) % 3600);
  item.altitudeDeciMetres = static_cast<std::int32_t>(std::lround(point.altitudeMetres * 10));
  item.quality = 1;
  item.fixDimensions = 3;
  item.satellitesInView = 11;
  item.satellitesUsed = 8;
  item.signalDecibels = 44;
  item.valid = 1;
}

void PutUtc(GpsStatusItem& item) {
  using std::chrono::floor;
  const auto now = floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
  const auto today = floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(today);
  item.utcDate = static_cast<std::uint32_t>(int{date.year()}) * 10000 + unsigned{date.month()} * 100 +
                 unsigned{date.day()};
  item.utcTimeOfDayMs = static_cast<std::uint32_t>((now - today).count());
}

}  // namespace bench
