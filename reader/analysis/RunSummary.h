#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Driven.h"
#include "Intervals.h"
#include "Row.h"
#include "Runs.h"

namespace reader {

// The records of one source in one table, without restated records.
struct SourceSummary {
  std::int64_t records = 0;
  std::int64_t firstUtcMs = kNoUtc;
  std::int64_t lastUtcMs = kNoUtc;
  bool periodic = false;  // recorded at regular intervals
  Intervals intervals;
};

// A recorded loss of records.
struct Loss {
  std::int64_t count = 0;
  std::string table;
  std::int64_t fromTick = 0;
  std::int64_t toTick = 0;
};

// Summary of one run.
struct RunSummary {
  using Source = std::pair<std::string, std::string>;  // table, source

  std::int64_t records = 0;
  std::int64_t firstTick = 0;
  std::int64_t lastTick = 0;
  std::int64_t endMs = 0;  // latest event, from the first tick
  std::int64_t firstUtcMs = kNoUtc;
  std::int64_t lastUtcMs = kNoUtc;
  bool cleanEnd = false;
  bool isCopy = false;        // a copy of part of a run
  std::vector<Source> order;  // sources in order of their first record
  std::map<Source, SourceSummary> sources;
  std::vector<std::pair<std::string, std::string>> facts;  // name and last value, such as the serial
  std::vector<Loss> losses;
  std::int64_t lost = 0;
  Driven driven;

  std::int64_t DurationMs() const { return lastTick - firstTick; }
};

// Text for people.
std::string LossText(const Loss& loss);
const char* HowItEnded(const Run& run, const RunSummary& summary);

RunSummary Summarize(const Run& run, Messages& messages);

}  // namespace reader
