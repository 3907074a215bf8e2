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

// The values of a run that are drawn as lines, grouped into charts.
class Charts {
 public:
  // Call for every shown record, in order; `gps` is ReadGps(row).
  void Add(const Row& row, const GpsReading& gps, std::int64_t ms);
  // Writes an array of the charts with values: "name", "unit" and "lines". Each line has "name" and the
  // members that Series::Write writes. Gaps break a line. A value recorded on change holds until the next
  // one, the last value until `endMs`.
  void Write(const char* name, const Gaps& gaps, std::int64_t endMs, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMostLines = 64;
  // Identifies a line; sorts in display order.
  struct Name {
    store::Chart chart;
    store::TableId table;
    std::size_t column;
    std::string line;
    // NOLINTNEXTLINE(modernize-use-nullptr): the check dislikes the generated comparison
    auto operator<=>(const Name& other) const = default;
  };
  struct Line {
    Series series;
    std::pair<std::string, std::string> source;  // table and name of the source
    bool holds = false;                          // recorded on change
    double last = 0;
  };

  void Draw(const Row& row, const Name& name, std::int64_t ms, double value);
  void Break(std::string_view table, std::string_view source);

  std::map<Name, Line> lines_;
};

}  // namespace reader
