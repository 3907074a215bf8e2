#pragma once

#include <map>
#include <string>
#include <utility>

#include "Gaps.h"
#include "Series.h"

// The values of a run that are drawn as lines, by chart.
class Charts {
 public:
  // Of every record, in their order.
  void Add(const Row& row, std::int64_t ms);
  // An array of the charts in which something is, each with "name", "unit" and "lines", those with "name"
  // and what a Series writes. Lines are broken in gaps.
  void Write(const char* name, const Gaps& gaps, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMostLines = 64;
  using Name = std::pair<std::size_t, std::string>;  // which value, name of the line
  struct Line {
    Series series;
    std::pair<std::string, std::string> source;  // table and name of the source
  };

  void Break(std::string_view table, std::string_view source);

  std::map<Name, Line> lines_;
};
