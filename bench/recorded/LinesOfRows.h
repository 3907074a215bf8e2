#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Row.h"

namespace bench {

using reader::Row;

// Turns the rows of a recording, in their order, into commands of a drive that make the same rows again.
class LinesOfRows {
 public:
  // The command of a row, as "crash on"; several have "\n" between them. Empty for rows without one, and for
  // rows that a later row completes.
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

  // An item makes a row for each of its parts. At the last part: the commands of the parts that changed, one
  // at least.
  std::string PartOf(const char* verb, std::int64_t part, const std::string& value, bool last);

  std::map<std::string, std::string> parts_;  // values by verb and part, as told last
  std::string changed_;                       // commands of the parts that changed
  std::string radar_;  // speeds of the last radar row, which the vehicle's own completes
  std::map<std::int64_t, bool> micPresent_;  // as told last
  std::string cameras_;                      // states of the first cameras, told one by one at the start
};

}  // namespace bench
