#include "Readings.h"

#include <algorithm>
#include <cmath>

#include "SourceTable.h"
#include "Track.h"
#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"

namespace bench {

namespace {

std::uint16_t WholeKmh(double value) {
  return static_cast<std::uint16_t>(std::lround(value));
}

Advance FollowTrack() {
  return [track = Track()](Item& item, double seconds) mutable {
    auto& gps = static_cast<GpsStatusItem&>(item);
    const Track::Point& point = track.At(seconds);
    if (gps.HasFix()) PutPoint(gps, point);
    PutUtc(gps);
  };
}

// Traffic comes and goes while this vehicle drives its track.
Advance WatchTraffic() {
  return [track = Track()](Item& item, double seconds) mutable {
    auto& radar = static_cast<RadarItem&>(item);
    radar.patrolSpeedKmh = WholeKmh(track.At(seconds).speedKmh);
    radar.targetSpeedKmh = WholeKmh(80 + 25 * std::sin(seconds));
    radar.fastestSpeedKmh = std::max(radar.fastestSpeedKmh, radar.targetSpeedKmh);
  };
}

Advance WarmUp() {
  return [](Item& item, double seconds) {
    static_cast<TempStatus&>(item).sensor0Celsius =
        static_cast<std::int16_t>(20 + std::min(seconds / 2, 40.0));
  };
}

Advance StayAsItIs() {
  return [](Item& /*item*/, double /*seconds*/) {};
}

constexpr Reading kReadings[] = {
    {"gps rate", SourceNamed("gps"), FollowTrack},
    {"radar rate", SourceNamed("radar"), WatchTraffic},
    {"mic rate", SourceNamed("mic"), StayAsItIs},
    {"temp rate", SourceNamed("temp"), WarmUp},
};

}  // namespace

std::span<const Reading> Readings() {
  return kReadings;
}

}  // namespace bench
