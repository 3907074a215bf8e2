#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "items/GpsStatusItem.h"

namespace bench {

// The log of a GPS receiver, NMEA 0183 as text: GGA, RMC, GSA, GSV, VTG and GLL of any talker.
// Other sentences are counted and skipped; lines that begin with "#" are comments.

// One epoch of the receiver.
struct NmeaReading {
  std::int64_t atMs = 0;  // since the first reading of the log
  GpsStatusItem item;     // without a tick
};

struct NmeaCounts {
  std::size_t used = 0;
  std::size_t otherTypes = 0;
  std::size_t malformed = 0;  // good checksum, malformed fields
  std::size_t badChecksum = 0;
  std::size_t cutShort = 0;  // without a checksum
  std::size_t garbage = 0;   // lines that are not sentences
};

struct NmeaLog {
  std::vector<NmeaReading> readings;
  NmeaCounts counts;

  std::size_t Fixes() const;
  // One line for people.
  std::string Summary() const;
};

// The times of the sentences space the readings. Where a time is missing, goes back, or jumps by more than a
// minute (a log in several parts), the next reading follows after one second.
NmeaLog ParseNmea(std::string_view text);

// Returns false when the file cannot be read.
bool ReadNmea(const std::string& path, NmeaLog& log);

}  // namespace bench
