#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "RunSummary.h"

class JsonWriter;

// When a source that reports at regular times did not: the longest stretches.
class Gaps {
 public:
  // `summary` is of the whole run.
  explicit Gaps(const RunSummary& summary);

  // Of every record, in their order.
  void Add(const Row& row, std::int64_t ms);
  // An array of the sources, each with "source", "usualMs", how many gaps there are ("count"), how long
  // together ("totalMs") and the longest of them, in their order ("gaps": [from, length]). Up to `endMs`
  // there were no more records.
  void Write(const char* name, std::int64_t endMs, JsonWriter& json) const;
  // Longer than this without a record is a gap of the source; 0 where that is not known.
  double GapMs(const std::string& table, const std::string& source) const;

 private:
  static constexpr std::size_t kMost = 500;
  struct Gap {
    std::int64_t fromMs;
    std::int64_t lengthMs;
  };
  struct Source {
    RunSummary::Source key;
    double usualMs = 0;
    bool any = false;
    std::int64_t lastMs = 0;
    std::int64_t count = 0;
    std::int64_t totalMs = 0;
    std::vector<Gap> longest{};  // a heap, the shortest first

    void Pass(std::int64_t ms);  // a record, or the end
  };

  std::vector<Source> sources_;
};
