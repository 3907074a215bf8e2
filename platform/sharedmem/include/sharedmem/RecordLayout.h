#pragma once

#include <cstddef>
#include <cstdint>

// The fields of the shared record: offset and size in bits, all big-endian. GPS and radar fields repeat those
// of GpsStatusItem and RadarItem, in the same units.
namespace sharedrecord {

struct Place {
  std::size_t offset;
  int bits;
};

constexpr Place kState{0x00, 16};
constexpr std::uint16_t kKept = 0x0100;   // a running process keeps the record up to date
constexpr std::uint16_t kEnded = 0x0001;  // that process stopped in order

constexpr Place kGpsValid{0x04, 8};
constexpr Place kLatitudeHemisphere{0x08, 8};  // 'N' or 'S'
constexpr Place kLatitudeDegrees{0x0C, 32};
constexpr Place kLatitudeMinutes{0x10, 16};
constexpr Place kLatitudeMinuteFraction{0x14, 32};
constexpr Place kLongitudeHemisphere{0x18, 8};  // 'E' or 'W'
constexpr Place kLongitudeDegrees{0x1C, 32};
constexpr Place kLongitudeMinutes{0x20, 16};
constexpr Place kLongitudeMinuteFraction{0x24, 32};
constexpr Place kSpeedDeciKnots{0x28, 16};
constexpr Place kSatellitesInView{0x2A, 16};
constexpr Place kQuality{0x2C, 32};
constexpr Place kFixDimensions{0x30, 32};
constexpr Place kAltitudeDeciMetres{0x34, 32};  // signed
constexpr Place kSatellitesUsed{0x38, 32};
constexpr Place kSignalDecibels{0x3C, 32};  // signed
constexpr Place kSpeedDeciKmh{0x40, 16};
constexpr Place kCourseDeciDegrees{0x42, 16};
constexpr Place kUtcTimeOfDayMs{0x44, 32};
constexpr Place kUtcDate{0x48, 32};

constexpr Place kRadarStatus{0x4C, 16};
constexpr Place kPatrolSpeedKmh{0x4E, 16};
constexpr Place kTargetSpeedKmh{0x50, 16};
constexpr Place kFastestSpeedKmh{0x52, 16};
constexpr Place kLockedSpeedKmh{0x54, 16};

}  // namespace sharedrecord
