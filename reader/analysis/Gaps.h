#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "RunSummary.h"

namespace reader {

class JsonWriter;

// Gaps of periodic sources. A gap is an interval between two records of at least 2.5 times the usual
// interval.
class Gaps {
 public:
  struct Gap {
    std::int64_t fromMs;  // from the first tick of the run
    std::int64_t fromUtcMs;
    std::int64_t lengthMs;
  };
  struct Source {
    RunSummary::Source key;
    double usualMs = 0;
    bool any = false;
    std::int64_t lastMs = 0;
    std::int64_t lastUtcMs = 0;
    std::int64_t count = 0;
    std::int64_t totalMs = 0;
    std::vector<Gap> longest{};  // heap with the shortest gap first

    void Pass(std::int64_t ms, std::int64_t utcMs);  // a record, or the end of the run
  };

  // `summary` covers the whole run.
  explicit Gaps(const RunSummary& summary);

  // Call for every record that is not restated, in order.
  void Add(const Row& row, std::int64_t ms);
  // All sources with their gaps in order of time. The time from the last record to `endMs` may be a gap.
  std::vector<Source> UpTo(std::int64_t endMs) const;
  // Writes an array of sources: "source", "usualMs", "count" and "totalMs" of all gaps, and "gaps", the
  // longest ones as [from, length] in order of time.
  void Write(const char* name, std::int64_t endMs, JsonWriter& json) const;
  // Shortest gap of a source; 0 if its usual interval is unknown.
  double GapMs(const std::string& table, const std::string& source) const;

 private:
  static constexpr std::size_t kMost = 500;

  std::vector<Source> sources_;
};

// Reads a whole run and returns its gaps.
std::vector<Gaps::Source> FindGaps(const Run& run, const RunSummary& summary, Messages& messages);

}  // namespace reader
