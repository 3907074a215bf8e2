#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "RunSummary.h"

namespace reader {

class JsonWriter;

// When a source that reports at regular times did not: a gap is more than 2.5 times as long as its usual
// distance.
class Gaps {
 public:
  struct Gap {
    std::int64_t fromMs;  // since the first tick of the run
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
    std::vector<Gap> longest{};  // a heap, the shortest first

    void Pass(std::int64_t ms, std::int64_t utcMs);  // a record, or the end
  };

  // `summary` is of the whole run.
  explicit Gaps(const RunSummary& summary);

  // Of every record, in their order.
  void Add(const Row& row, std::int64_t ms);
  // The sources, each with its gaps in the order of time; up to `endMs` there were no more records.
  std::vector<Source> UpTo(std::int64_t endMs) const;
  // An array of them, each with "source", "usualMs", how many gaps there are ("count"), how long together
  // ("totalMs") and the longest of them, in their order ("gaps": [from, length]).
  void Write(const char* name, std::int64_t endMs, JsonWriter& json) const;
  // Longer than this without a record is a gap of the source; 0 where that is not known.
  double GapMs(const std::string& table, const std::string& source) const;

 private:
  static constexpr std::size_t kMost = 500;

  std::vector<Source> sources_;
};

// Of a whole run, read for it.
std::vector<Gaps::Source> FindGaps(const Run& run, const RunSummary& summary, Messages& messages);

}  // namespace reader
