#include "GpsItem.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace bench {

namespace {

void PutAngle(std::int64_t e4Min, std::uint16_t& degrees, std::uint16_t& minutes, std::uint32_t& fraction,
              std::uint32_t& hemisphere) {
  constexpr std::int64_t kPerMinute = 10000;
  const std::int64_t total = std::abs(e4Min);
  degrees = static_cast<std::uint16_t>(total / kE4MinutesPerDegree);
  minutes = static_cast<std::uint16_t>(total % kE4MinutesPerDegree / kPerMinute);
  fraction = static_cast<std::uint32_t>(total % kPerMinute);
  hemisphere = e4Min < 0 ? 0 : GpsStatusItem::kNorthOrEast;
}

}  // namespace

void PutPlace(GpsStatusItem& item, std::int64_t latitudeE4Min, std::int64_t longitudeE4Min) {
  PutAngle(latitudeE4Min, item.latitudeDegrees, item.latitudeMinutes, item.latitudeMinuteFraction,
           item.latitudeHemisphere);
  PutAngle(longitudeE4Min, item.longitudeDegrees, item.longitudeMinutes, item.longitudeMinuteFraction,
           item.longitudeHemisphere);
}

void PutPlaceDegrees(GpsStatusItem& item, double latitude, double longitude) {
  PutPlace(item, std::llround(latitude * kE4MinutesPerDegree), std::llround(longitude * kE4MinutesPerDegree));
}

std::uint16_t InField(std::int64_t value) {
  constexpr std::int64_t kMost = std::numeric_limits<std::uint16_t>::max();
  return static_cast<std::uint16_t>(std::clamp(value, std::int64_t{0}, kMost));
}

void LoseFix(GpsStatusItem& item) {
  item.quality = 0;
  item.fixDimensions = 0;
  item.satellitesUsed = 0;
  item.altitudeDeciMetres = GpsStatusItem::kNoAltitude;
  item.signalDecibels = GpsStatusItem::kNoSignal;
  item.valid = 0;
}

GpsStatusItem NoFix() {
  GpsStatusItem item;
  LoseFix(item);
  return item;
}

}  // namespace bench
