#include "GpsFix.h"

bool ReadGpsFix(const Row& row, GpsFix& fix) {
  constexpr std::int64_t kQualityNone = 0;
  constexpr std::int64_t kQualityManual = 7;
  if (row.table != "gps") return false;
  fix.utcMs = row.utcMs;
  fix.latitudeE4min = row.Number("latitude_e4min", INT64_MAX);
  fix.longitudeE4min = row.Number("longitude_e4min", INT64_MAX);
  fix.altitudeDm = row.Number("altitude_dm", kAltitudeUnknown);
  fix.hasAltitude = fix.altitudeDm != kAltitudeUnknown;
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

bool LosesFix(const Row& row) {
  if (row.table == "gps_state") return row.Number("valid") == 0;
  GpsFix fix;
  return row.table == "gps" && !ReadGpsFix(row, fix);
}

std::int64_t EventTick(const Row& row) {
  if (!row.utcBySender) return row.tick;
  const auto shift = static_cast<std::uint32_t>(row.senderTick) - static_cast<std::uint32_t>(row.tick);
  const std::int64_t ms = static_cast<std::int32_t>(shift);
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(row.tick) + static_cast<std::uint64_t>(ms));
}
