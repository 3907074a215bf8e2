#pragma once

#include <array>
#include <string>

#include "Record.h"

namespace store {

enum class ColumnType : unsigned char { kInteger, kText };

// Charts and lane groups of a report, in display order.
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
  // For people: value / perUnit is in `unit`; "" if it has no unit.
  const char* unit = "";
  int perUnit = 1;
  // How a report draws the column: as a line of a chart, in `unit`, or as a lane that is on while the value
  // is above 0.
  Chart chart = Chart::kNone;
  const char* line = nullptr;  // the line's name; null: the source's
  Lanes lanes = Lanes::kNone;
};

// When a table gets a record: periodically while the sender works, or on each change. A value recorded on
// change holds until the next one.
enum class Cadence : unsigned char { kOnChange, kPeriodic };

// How the first column names the source of a record.
enum class Naming : unsigned char {
  kPlain,     // not used: "gps"
  kNumbered,  // by number: "radar 1"
  kTags,      // by tag name: "brakes" (Tags.h); if it has none, by number: "signal 80"
  kSpeeds,    // by kSpeedSources: "speed gps"; if not listed, by number: "speed 3"
};

constexpr int kNoState = -1;

// Describes one kind of record. The store derives CREATE TABLE, INSERT, the timeline view and the full state
// from it; the reader derives its names, charts and lanes.
struct Table {
  TableId id{};
  const char* name = "";
  // Number of leading columns that identify a source. The full state holds the last record of each source.
  // kNoState: the table is not part of the full state.
  int keyColumns = kNoState;
  Cadence cadence = Cadence::kOnChange;
  const char* source = "";
  Naming naming = Naming::kPlain;
  const char* text = "";             // SQL over the columns: the record as text for people
  std::array<Column, 14> columns{};  // ends at the first without a name

  constexpr std::size_t ColumnCount() const {
    std::size_t count = 0;
    while (count < columns.size() && columns[count].name != nullptr) ++count;
    return count;
  }
  // Whether the first column is a number that identifies the source.
  constexpr bool HasNumberedSources() const {
    return keyColumns == 1 && columns[0].type == ColumnType::kInteger;
  }
};

// The name of a record's source in reports and the timeline; `key` is the record's first column. SourceSql
// gives the same name in SQL over the columns.
std::string SourceOf(const Table& table, std::int64_t key);
std::string SourceSql(const Table& table);

}  // namespace store
