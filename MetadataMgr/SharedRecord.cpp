#include "SharedRecord.h"

#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"
#include "sharedmem/MetadataSharedMem.h"
#include "system/BigEndian.h"

namespace {

using sharedrecord::Field;

// Bytes outside these fields keep their values.
constexpr Field kInitialFields[] = {
    {sharedrecord::kState, sharedrecord::kKept},
    {sharedrecord::kLatitudeHemisphere, 0},
    {sharedrecord::kLatitudeDegrees, 0},
    {sharedrecord::kLatitudeMinutes, 0},
    {sharedrecord::kLatitudeMinuteFraction, 0},
    {sharedrecord::kLongitudeHemisphere, 0},
    {sharedrecord::kLongitudeDegrees, 0},
    {sharedrecord::kLongitudeMinutes, 0},
    {sharedrecord::kLongitudeMinuteFraction, 0},
    {sharedrecord::kSpeedDeciKnots, 0},
    {sharedrecord::kSatellitesInView, 0},
    {sharedrecord::kQuality, 0},
    {sharedrecord::kFixDimensions, 0},
    {sharedrecord::kAltitudeDeciMetres, GpsStatusItem::kNoAltitude},
    {sharedrecord::kSatellitesUsed, 0},
    {sharedrecord::kSignalDecibels, 0},
    {sharedrecord::kSpeedDeciKmh, 0},
    {sharedrecord::kRadarStatus, 0},
    {sharedrecord::kPatrolSpeedKmh, 0},
    {sharedrecord::kTargetSpeedKmh, 0},
    {sharedrecord::kFastestSpeedKmh, 0},
    {sharedrecord::kLockedSpeedKmh, 0},
};

void Put(unsigned char* items, const Field& field) {
  unsigned char* p = items + field.place.offset;
  if (field.place.bits == 32) {
    PutU32(p, field.value);
  } else if (field.place.bits == 16) {
    PutU16(p, static_cast<std::uint16_t>(field.value));
  } else {
    *p = static_cast<unsigned char>(field.value);
  }
}

}  // namespace

std::uint32_t sharedrecord::NorthOrSouth(const GpsStatusItem& gps) {
  return gps.latitudeHemisphere == GpsStatusItem::kNorthOrEast ? 'N' : 'S';
}

std::uint32_t sharedrecord::EastOrWest(const GpsStatusItem& gps) {
  return gps.longitudeHemisphere == GpsStatusItem::kNorthOrEast ? 'E' : 'W';
}

void sharedrecord::Write(unsigned char* items, std::span<const Field> fields) {
  if (items == nullptr) return;
  const MetadataSharedMem::Writing writing(items);
  for (const Field& field : fields) Put(items, field);
}

void sharedrecord::Reset(unsigned char* items) {
  Write(items, kInitialFields);
}

void sharedrecord::WriteGps(unsigned char* items, const GpsStatusItem& gps) {
  const Field fields[] = {
      {kGpsValid, gps.valid},
      {kLatitudeHemisphere, NorthOrSouth(gps)},
      {kLatitudeDegrees, gps.latitudeDegrees},
      {kLatitudeMinutes, gps.latitudeMinutes},
      {kLatitudeMinuteFraction, gps.latitudeMinuteFraction},
      {kLongitudeHemisphere, EastOrWest(gps)},
      {kLongitudeDegrees, gps.longitudeDegrees},
      {kLongitudeMinutes, gps.longitudeMinutes},
      {kLongitudeMinuteFraction, gps.longitudeMinuteFraction},
      {kSpeedDeciKnots, gps.speedDeciKnots},
      {kSatellitesInView, gps.satellitesInView},
      {kQuality, gps.quality},
      {kFixDimensions, gps.fixDimensions},
      {kAltitudeDeciMetres, static_cast<std::uint32_t>(gps.altitudeDeciMetres)},
      {kSatellitesUsed, gps.satellitesUsed},
      {kSignalDecibels, static_cast<std::uint32_t>(gps.signalDecibels)},
      {kSpeedDeciKmh, gps.speedDeciKmh},
      {kCourseDeciDegrees, gps.courseDeciDegrees},
      {kUtcTimeOfDayMs, gps.utcTimeOfDayMs},
      {kUtcDate, gps.utcDate},
  };
  Write(items, fields);
}

void sharedrecord::WriteRadar(unsigned char* items, const RadarItem& radar) {
  const Field fields[] = {
      {kRadarStatus, radar.status},
      {kPatrolSpeedKmh, radar.patrolSpeedKmh},
      {kTargetSpeedKmh, radar.targetSpeedKmh},
      {kFastestSpeedKmh, radar.fastestSpeedKmh},
      {kLockedSpeedKmh, radar.lockedSpeedKmh},
  };
  Write(items, fields);
}

void sharedrecord::MarkEnded(unsigned char* items) {
  const Field fields[] = {{kState, kEnded}};
  Write(items, fields);
}
