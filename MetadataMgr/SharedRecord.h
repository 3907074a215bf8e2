#pragma once

#include <cstdint>
#include <span>

#include "sharedmem/RecordLayout.h"

class GpsStatusItem;
class RadarItem;

// The shared record as this process writes it. `items` is the record's first byte, or null: then nothing is
// done. Each call is one change.
namespace sharedrecord {

// One field to write. Only the low bits of `value` count.
struct Field {
  Place place;
  std::uint32_t value;
};

// The letters of the hemispheres.
std::uint32_t NorthOrSouth(const GpsStatusItem& gps);
std::uint32_t EastOrWest(const GpsStatusItem& gps);

void Write(unsigned char* items, std::span<const Field> fields);

// Writes the initial values.
void Reset(unsigned char* items);

// Copies the fields of a reading, whether it is valid or not.
void WriteGps(unsigned char* items, const GpsStatusItem& gps);
void WriteRadar(unsigned char* items, const RadarItem& radar);

// Marks the record as no longer kept.
void MarkEnded(unsigned char* items);

}  // namespace sharedrecord
