#pragma once

#include <cstdint>
#include <span>

#include "sharedmem/RecordLayout.h"

class GpsStatusItem;
class RadarItem;

// Writes the shared record. `items` is the record's first byte; calls with null do nothing. Each call counts
// as one change of the record.
namespace sharedrecord {

// One field to write. Uses as many low bits of `value` as the field has.
struct Field {
  Place place;
  std::uint32_t value;
};

// Return the letter of the hemisphere.
std::uint32_t NorthOrSouth(const GpsStatusItem& gps);
std::uint32_t EastOrWest(const GpsStatusItem& gps);

void Write(unsigned char* items, std::span<const Field> fields);

// Writes the initial values.
void Reset(unsigned char* items);

// Copy the fields of a reading, valid or not.
void WriteGps(unsigned char* items, const GpsStatusItem& gps);
void WriteRadar(unsigned char* items, const RadarItem& radar);

// Marks the record as ended: this process no longer updates it.
void MarkEnded(unsigned char* items);

}  // namespace sharedrecord
