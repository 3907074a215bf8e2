#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "items/GpsStatusItem.h"

// The log of a GPS receiver, NMEA 0183 as text: GGA, RMC, GSA, GSV, VTG and GLL of any talker.
// Everything else is skipped and counted; lines that begin with "#" are comments.

// What the receiver told of one moment.
struct NmeaReading {
  std::int64_t atMs = 0;  // since the first reading of the log
  GpsStatusItem item;     // without a tick
};

struct NmeaCounts {
  std::size_t used = 0;
  std::size_t otherTypes = 0;
  std::size_t malformed = 0;  // with a good checksum, but fields that say nothing
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

// The readings have the distances of their times. Where there is no time, the time goes back, or it leaps
// by more than a minute (a log in several parts), the distance is a second.
NmeaLog ParseNmea(std::string_view text);

// The same for a file; false when it cannot be read.
bool ReadNmea(const std::string& path, NmeaLog& log);
