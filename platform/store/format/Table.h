#pragma once

#include <array>
#include <string>

#include "Record.h"

namespace store {

enum class ColumnType : unsigned char { kInteger, kText };

// The charts and groups of lanes of a report, in their order there.
enum class Chart : unsigned char { kNone, kSpeed, kRadar, kTemperature, kAltitude, kSatellites, kCount };
enum class Lanes : unsigned char { kNone, kInputs, kMicrophones, kCameras, kStreams, kReception, kCount };

struct Caption {
  const char* name = "";
  const char* unit = "";
};
inline constexpr std::array<Caption, static_cast<std::size_t>(Chart::kCount)> kCharts{{
    {},
    {"Speed", "km/h"},
    {"Radar", "km/h"},
    {"Temperature", "\u00B0C"},
    {"Altitude", "m"},
    {"Satellites", "in use"},
}};
inline constexpr std::array<Caption, static_cast<std::size_t>(Lanes::kCount)> kLanes{
    {{}, {"Inputs"}, {"Microphones"}, {"Cameras"}, {"Streams"}, {"Reception"}}};

struct Column {
  const char* name = nullptr;
  ColumnType type = ColumnType::kInteger;
  // For people: the value divided by `perUnit` is in `unit`; "" where it has none.
  const char* unit = "";
  int perUnit = 1;
  // Where a report draws the column: as a line of a chart, in the unit above, or as a lane that is on while
  // the value is above 0.
  Chart chart = Chart::kNone;
  const char* line = nullptr;  // the line's name; null: the source's
  Lanes lanes = Lanes::kNone;
};

// When a table gets a record: at regular times as long as all is well, or with each change. A value
// recorded on change holds until the next one.
enum class Cadence : unsigned char { kOnChange, kPeriodic };

// How the first column names the source of a record.
enum class Naming : unsigned char {
  kPlain,     // not at all: "gps"
  kNumbered,  // by its number: "radar 1"
  kTags,      // by a tag, "brakes" (Tags.h); by its number where the tag has no name: "signal 80"
  kSpeeds,    // by kSpeedSources: "speed gps"; by its number where there is none: "speed 3"
};

constexpr int kNoState = -1;

// Everything about one kind of record. The store makes CREATE TABLE, INSERT, the timeline view and the full
// state of it; the reader its names, charts and lanes.
struct Table {
  TableId id = kTableCount;
  const char* name = "";
  // How many of the first columns tell one source from another; the full state holds the last
  // record of each. kNoState: the table has no part in the full state.
  int keyColumns = kNoState;
  Cadence cadence = Cadence::kOnChange;
  const char* source = "";
  Naming naming = Naming::kPlain;
  const char* text = "";             // SQL over the columns: the record for people
  std::array<Column, 14> columns{};  // ends at the first without a name

  constexpr std::size_t ColumnCount() const {
    std::size_t count = 0;
    while (count < columns.size() && columns[count].name != nullptr) ++count;
    return count;
  }
  // Whether the first column is a number that tells one source from another.
  constexpr bool HasNumberedSources() const {
    return keyColumns == 1 && columns[0].type == ColumnType::kInteger;
  }
};

// What a report and the timeline call the source of a record whose first column is `key`; in SQL over the
// columns.
std::string SourceOf(const Table& table, std::int64_t key);
std::string SourceSql(const Table& table);

}  // namespace store
