#pragma once

#include "items/RecordItem.h"

// A reading of the GPS process. The system knows its fields only by position. This table gives their names
// and the offset of the same field in the shared record:
//
//   position  bits  name                        shared record
//   0x04      16    latitudeDegrees             0x0C
//   0x0C      16    latitudeMinutes             0x10
//   0x14      32    latitudeMinuteFraction      0x14
//   0x18      32    latitudeHemisphere          0x08, as 'N' or 'S'
//   0x20      16    longitudeDegrees            0x1C
//   0x28      16    longitudeMinutes            0x20
//   0x30      32    longitudeMinuteFraction     0x24
//   0x34      32    longitudeHemisphere         0x18, as 'E' or 'W'
//   0x3C      32    utcDate                     0x48
//   0x44      16    speedDeciKmh                0x40
//   0x4C      16    speedDeciKnots              0x28
//   0x54      16    courseDeciDegrees           0x42
//   0x5C      16    satellitesInView            0x2A
//   0x60      32    quality                     0x2C
//   0x64      32    fixDimensions               0x30
//   0x6C      32    altitudeDeciMetres          0x34
//   0x70      32    satellitesUsed              0x38
//   0x78      32    signalDecibels              0x3C
//   0x80      32    utcTimeOfDayMs              0x44
//   0x84      8     valid                       0x04
//   0x88      32    tick
class GpsStatusItem : public RecordItem<GpsStatusItem> {
 public:
  static constexpr std::uint32_t kNorthOrEast = 1;  // hemisphere; any other value means south or west
  static constexpr std::int32_t kNoAltitude = 0x07FFFFFF;
  static constexpr std::int32_t kNoSignal = -32;

  // Quality as in the NMEA 0183 GGA sentence: 0 no fix, 1 GPS, 2 differential, 4 and 5 real-time
  // kinematic, 6 estimated, 7 manual input, which is no fix either, 8 simulation.
  bool HasFix() const { return quality != 0 && quality != 7; }

  std::uint16_t latitudeDegrees = 0;
  std::uint16_t latitudeMinutes = 0;
  std::uint32_t latitudeMinuteFraction = 0;  // ten-thousandths of a minute
  std::uint32_t latitudeHemisphere = 0;
  std::uint16_t longitudeDegrees = 0;
  std::uint16_t longitudeMinutes = 0;
  std::uint32_t longitudeMinuteFraction = 0;  // ten-thousandths of a minute
  std::uint32_t longitudeHemisphere = 0;
  std::uint32_t utcDate = 0;  // decimal number YYYYMMDD; 0: unknown
  std::uint16_t speedDeciKmh = 0;
  std::uint16_t speedDeciKnots = 0;
  std::uint16_t courseDeciDegrees = 0;  // over ground, clockwise from true north
  std::uint16_t satellitesInView = 0;
  std::uint32_t quality = 0;
  std::uint32_t fixDimensions = 0;  // 2 or 3; 0 without fix
  std::int32_t altitudeDeciMetres = 0;
  std::uint32_t satellitesUsed = 0;
  std::int32_t signalDecibels = 0;  // carrier to noise of the best satellite
  std::uint32_t utcTimeOfDayMs = 0;
  std::uint8_t valid = 0;  // validity as the receiver states it: 1 valid
  std::uint32_t tick = 0;

  static constexpr auto Fields() {
    return std::make_tuple(
        &GpsStatusItem::latitudeDegrees, &GpsStatusItem::latitudeMinutes,
        &GpsStatusItem::latitudeMinuteFraction, &GpsStatusItem::latitudeHemisphere,
        &GpsStatusItem::longitudeDegrees, &GpsStatusItem::longitudeMinutes,
        &GpsStatusItem::longitudeMinuteFraction, &GpsStatusItem::longitudeHemisphere, &GpsStatusItem::utcDate,
        &GpsStatusItem::speedDeciKmh, &GpsStatusItem::speedDeciKnots, &GpsStatusItem::courseDeciDegrees,
        &GpsStatusItem::satellitesInView, &GpsStatusItem::quality, &GpsStatusItem::fixDimensions,
        &GpsStatusItem::altitudeDeciMetres, &GpsStatusItem::satellitesUsed, &GpsStatusItem::signalDecibels,
        &GpsStatusItem::utcTimeOfDayMs, &GpsStatusItem::valid, &GpsStatusItem::tick);
  }
};
