#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Row.h"

namespace bench {

using reader::Row;

// Turns the rows of a recording, in order, into commands of a drive that produce the same rows again.
class LinesOfRows {
 public:
  // Returns the command of a row, as "crash on", or several commands with "\n" between them. Empty when the
  // row has no command, or a later row completes it.
  std::string Take(const Row& row);

 private:
  using Make = std::string (LinesOfRows::*)(const Row&);
  struct Table;
  static const Table kTables[];

  std::string State(const Row& row);
  std::string Bookmark(const Row& row);
  std::string GpsState(const Row& row);
  std::string Gps(const Row& row);
  std::string RadarState(const Row& row);
  std::string Radar(const Row& row);
  std::string Speed(const Row& row);
  std::string MicPresent(const Row& row);
  std::string MicActive(const Row& row);
  std::string Temperature(const Row& row);
  std::string Camera(const Row& row);
  std::string VideoStream(const Row& row);
  std::string Quality(const Row& row);
  std::string LiveStream(const Row& row);
  std::string Vehicle(const Row& row);
  std::string SystemInfo(const Row& row);
  std::string Department(const Row& row);
  std::string Officer(const Row& row);
  std::string RecordingSettings(const Row& row);

  // An item has one row per part. At the last part, returns the commands of the changed parts, at least one.
  std::string PartOf(const char* verb, std::int64_t part, const std::string& value, bool last);

  std::map<std::string, std::string> parts_;  // last values, by verb and part
  std::string changed_;                       // commands of the parts that changed
  std::string radar_;  // speeds of the last radar row; the next speed row completes them
  std::map<std::int64_t, bool> micPresent_;  // last values
  std::string cameras_;                      // states of the first cameras, one row each at the start
};

}  // namespace bench
