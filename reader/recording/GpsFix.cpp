#include "GpsFix.h"

#include "RecordTime.h"
#include "Tables.h"

namespace reader {

namespace {

// Returns false unless the receiver had a fix and the coordinates are valid.
bool ReadFix(const Row& row, GpsFix& fix) {
  constexpr std::int64_t kQualityNone = 0;
  constexpr std::int64_t kQualityManual = 7;
  fix.utcMs = row.utcMs;
  fix.latitudeE4min = row.Number("latitude_e4min", INT64_MAX);
  fix.longitudeE4min = row.Number("longitude_e4min", INT64_MAX);
  fix.altitudeDm = row.Number("altitude_dm", store::kNoAltitudeDm);
  fix.hasAltitude = fix.altitudeDm != store::kNoAltitudeDm;
  fix.speedDeciKmh = row.Number("speed_deci_kmh");
  fix.courseDeciDeg = row.Number("course_deci_deg");
  fix.quality = row.Number("quality", 1);
  fix.dimensions = row.Number("fix_dimensions");
  fix.satellites = row.Number("satellites_used");
  const auto within = [](std::int64_t e4min, std::int64_t degrees) {
    return e4min >= -degrees * 600'000 && e4min <= degrees * 600'000;
  };
  return within(fix.latitudeE4min, 90) && within(fix.longitudeE4min, 180) && fix.quality != kQualityNone &&
         fix.quality != kQualityManual;
}

}  // namespace

GpsReading ReadGps(const Row& row) {
  GpsReading reading;
  if (row.table == "gps") {
    reading.hasFix = ReadFix(row, reading.fix);
    reading.losesFix = !reading.hasFix;
  } else if (row.table == "gps_state") {
    reading.losesFix = row.Number("valid") == 0;
  }
  return reading;
}

std::int64_t EventTick(const Row& row) {
  if (!row.utcBySender) return row.tick;
  const std::int64_t ms = store::TickDistanceMs(row.tick, static_cast<std::uint32_t>(row.senderTick));
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(row.tick) + static_cast<std::uint64_t>(ms));
}

}  // namespace reader
