#pragma once

#include <compare>
#include <map>
#include <string>
#include <utility>

#include "Gaps.h"
#include "GpsFix.h"
#include "Series.h"
#include "Table.h"

namespace reader {

// The values of a run that are drawn as lines, by chart.
class Charts {
 public:
  // Of every record, in their order, with what it says of the position.
  void Add(const Row& row, const GpsReading& gps, std::int64_t ms);
  // An array of the charts in which something is, each with "name", "unit" and "lines", those with "name"
  // and what a Series writes. Lines are broken in gaps; a value that is recorded on change holds up to the
  // next one, the last to `endMs`.
  void Write(const char* name, const Gaps& gaps, std::int64_t endMs, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMostLines = 64;
  // In the order in which they are shown.
  struct Name {
    store::Chart chart;
    store::TableId table;
    std::size_t column;
    std::string line;
    auto operator<=>(const Name& other) const = default;
  };
  struct Line {
    Series series;
    std::pair<std::string, std::string> source;  // table and name of the source
    bool holds = false;                          // it is recorded on change
    double last = 0;
  };

  void Draw(const Row& row, const Name& name, std::int64_t ms, double value);
  void Break(std::string_view table, std::string_view source);

  std::map<Name, Line> lines_;
};

}  // namespace reader
