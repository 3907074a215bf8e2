#pragma once

#include "items/RecordItem.h"

// A reading of the radar. The system knows its fields only by position. This table gives their names and the
// offset of the same field in the shared record:
//
//   position  bits  name             shared record
//   0x04      16    status           0x4C
//   0x0C      16    patrolSpeedKmh   0x4E
//   0x14      16    targetSpeedKmh   0x50
//   0x1C      16    fastestSpeedKmh  0x52
//   0x24      16    lockedSpeedKmh   0x54
//   0x28      32    tick
//
// A new item is not a usable reading.
class RadarItem : public RecordItem<RadarItem> {
 public:
  static constexpr std::uint16_t kStatusInvalid = 0x0080;  // not a usable reading

  bool Valid() const { return (status & kStatusInvalid) == 0; }

  std::uint16_t status = kStatusInvalid;
  std::uint16_t patrolSpeedKmh = 0;  // own speed of the vehicle
  std::uint16_t targetSpeedKmh = 0;
  std::uint16_t fastestSpeedKmh = 0;
  std::uint16_t lockedSpeedKmh = 0;
  std::uint32_t tick = 0;

  static constexpr auto Fields() {
    return std::make_tuple(&RadarItem::status, &RadarItem::patrolSpeedKmh, &RadarItem::targetSpeedKmh,
                           &RadarItem::fastestSpeedKmh, &RadarItem::lockedSpeedKmh, &RadarItem::tick);
  }
};
