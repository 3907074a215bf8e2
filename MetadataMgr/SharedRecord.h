#pragma once

// The shared record as this process writes it; byte offsets are part of the system's interface.
namespace sharedrecord {

// Writes what the record holds before the first event. `items` is its first byte.
void Reset(unsigned char* items);

// Marks the record as no longer kept.
void MarkEnded(unsigned char* items);

}  // namespace sharedrecord
