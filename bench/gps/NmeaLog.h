#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "items/GpsStatusItem.h"

namespace bench {

// The log of a GPS receiver, NMEA 0183 as text: GGA, RMC, GSA, GSV, VTG and GLL of any talker.
// Everything else is skipped and counted; lines that begin with "#" are comments.

// One moment of the receiver.
struct NmeaReading {
  std::int64_t atMs = 0;  // since the first reading of the log
  GpsStatusItem item;     // without a tick
};

struct NmeaCounts {
  std::size_t used = 0;
  std::size_t otherTypes = 0;
  std::size_t malformed = 0;  // with a good checksum and malformed fields
  std::size_t badChecksum = 0;
  std::size_t cutShort = 0;  // without a checksum
  std::size_t garbage = 0;   // lines that are no sentences
};

struct NmeaLog {
  std::vector<NmeaReading> readings;
  NmeaCounts counts;

  std::size_t Fixes() const;
  // One line for people.
  std::string Summary() const;
};

// The readings have the distances of their times. The distance is a second where a time is missing, goes
// back, or leaps by more than a minute (a log in several parts).
NmeaLog ParseNmea(std::string_view text);

// Reads a file. False when it cannot be read.
bool ReadNmea(const std::string& path, NmeaLog& log);

}  // namespace bench
