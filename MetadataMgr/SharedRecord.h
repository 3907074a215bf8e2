#pragma once

class GpsStatusItem;
class RadarItem;

// The shared record as this process writes it; byte offsets are part of the system's interface.
namespace sharedrecord {

// Writes what the record holds before the first event. `items` is its first byte.
void Reset(unsigned char* items);

// Copies the fields of a reading, whether it is valid or not.
void WriteGps(unsigned char* items, const GpsStatusItem& gps);
void WriteRadar(unsigned char* items, const RadarItem& radar);

// Marks the record as no longer kept.
void MarkEnded(unsigned char* items);

}  // namespace sharedrecord
