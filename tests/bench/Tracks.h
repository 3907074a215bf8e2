#pragma once

#include <filesystem>
#include <string>

#include "items/GpsStatusItem.h"
#include "support/TempDir.h"

// Logs of GPS receivers, made for these tests.
inline std::string OwnTrack(const std::string& name) {
  return std::string(OWN_TRACKS) + "/" + name;
}

// A position as in the table `gps`: ten-thousandths of a minute.
inline std::string PlaceOf(const GpsStatusItem& item) {
  const auto signedMinutes = [](unsigned degrees, unsigned minutes, unsigned fraction, bool positive) {
    const long total = (degrees * 60L + minutes) * 10000 + static_cast<long>(fraction);
    return std::to_string(positive ? total : -total);
  };
  return signedMinutes(item.latitudeDegrees, item.latitudeMinutes, item.latitudeMinuteFraction,
                       item.latitudeHemisphere == GpsStatusItem::kNorthOrEast) +
         " " +
         signedMinutes(item.longitudeDegrees, item.longitudeMinutes, item.longitudeMinuteFraction,
                       item.longitudeHemisphere == GpsStatusItem::kNorthOrEast);
}

// A reading as a row of that table, without ticks; "no fix" when it has no fix.
inline std::string RowOf(const GpsStatusItem& item) {
  if (!item.HasFix()) return "no fix";
  std::string row = PlaceOf(item);
  for (const long value :
       {long{item.altitudeDeciMetres}, long{item.speedDeciKmh}, long{item.speedDeciKnots},
        long{item.courseDeciDegrees}, static_cast<long>(item.quality), static_cast<long>(item.fixDimensions),
        static_cast<long>(item.satellitesUsed), long{item.satellitesInView}, long{item.signalDecibels},
        static_cast<long>(item.utcDate), static_cast<long>(item.utcTimeOfDayMs), long{item.valid}}) {
    row += " " + std::to_string(value);
  }
  return row;
}
