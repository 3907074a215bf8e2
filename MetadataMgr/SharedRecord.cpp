#include "SharedRecord.h"

#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"
#include "sharedmem/MetadataSharedMem.h"
#include "system/BigEndian.h"

namespace {

constexpr unsigned int kVersionOffset = 0;
constexpr std::uint16_t kKept = 0x0100;
constexpr std::uint16_t kEnded = 0x0001;

using sharedrecord::Field;

// In the order of their offsets. Bytes that are not listed stay as they are.
constexpr Field kInitialFields[] = {
    {kVersionOffset, 16, kKept},
    {8, 8, 0},
    {12, 32, 0},
    {16, 16, 0},
    {20, 32, 0},
    {24, 8, 0},
    {28, 32, 0},
    {32, 16, 0},
    {36, 32, 0},
    {40, 32, 0},
    {44, 32, 0},
    {48, 32, 0},
    {52, 32, 0x07FFFFFF},
    {56, 32, 0},
    {60, 32, 0},
    {64, 16, 0},
    {76, 32, 0},
    {80, 32, 0},
    {84, 16, 0},
};

void Put(unsigned char* items, const Field& field) {
  unsigned char* p = items + field.offset;
  if (field.bits == 32) {
    PutU32(p, field.value);
  } else if (field.bits == 16) {
    PutU16(p, static_cast<std::uint16_t>(field.value));
  } else {
    *p = static_cast<unsigned char>(field.value);
  }
}

}  // namespace

void sharedrecord::Write(unsigned char* items, std::span<const Field> fields) {
  if (items == nullptr) return;
  const MetadataSharedMem::Writing writing(items);
  for (const Field& field : fields) Put(items, field);
}

void sharedrecord::Reset(unsigned char* items) {
  Write(items, kInitialFields);
}

void sharedrecord::WriteGps(unsigned char* items, const GpsStatusItem& gps) {
  const auto north = gps.latitudeHemisphere == GpsStatusItem::kNorthOrEast;
  const auto east = gps.longitudeHemisphere == GpsStatusItem::kNorthOrEast;
  const Field fields[] = {
      {0x04, 8, gps.valid},
      {0x08, 8, static_cast<std::uint32_t>(north ? 'N' : 'S')},
      {0x0C, 32, gps.latitudeDegrees},
      {0x10, 16, gps.latitudeMinutes},
      {0x14, 32, gps.latitudeMinuteFraction},
      {0x18, 8, static_cast<std::uint32_t>(east ? 'E' : 'W')},
      {0x1C, 32, gps.longitudeDegrees},
      {0x20, 16, gps.longitudeMinutes},
      {0x24, 32, gps.longitudeMinuteFraction},
      {0x28, 16, gps.speedDeciKnots},
      {0x2A, 16, gps.satellitesInView},
      {0x2C, 32, gps.quality},
      {0x30, 32, gps.fixDimensions},
      {0x34, 32, static_cast<std::uint32_t>(gps.altitudeDeciMetres)},
      {0x38, 32, gps.satellitesUsed},
      {0x3C, 32, static_cast<std::uint32_t>(gps.signalDecibels)},
      {0x40, 16, gps.speedDeciKmh},
      {0x42, 16, gps.courseDeciDegrees},
      {0x44, 32, gps.utcTimeOfDayMs},
      {0x48, 32, gps.utcDate},
  };
  Write(items, fields);
}

void sharedrecord::WriteRadar(unsigned char* items, const RadarItem& radar) {
  const Field fields[] = {
      {0x4C, 16, radar.status},          {0x4E, 16, radar.patrolSpeedKmh}, {0x50, 16, radar.targetSpeedKmh},
      {0x52, 16, radar.fastestSpeedKmh}, {0x54, 16, radar.lockedSpeedKmh},
  };
  Write(items, fields);
}

void sharedrecord::MarkEnded(unsigned char* items) {
  const Field fields[] = {{kVersionOffset, 16, kEnded}};
  Write(items, fields);
}
