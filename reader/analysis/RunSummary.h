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

// The records of one source in one table; those that restate are not counted.
struct SourceSummary {
  std::int64_t records = 0;
  std::int64_t firstUtcMs = kNoUtc;
  std::int64_t lastUtcMs = kNoUtc;
  bool periodic = false;  // reports at regular times as long as all is well
  Intervals intervals;
};

// Records that the recorder lost and recorded as lost.
struct Loss {
  std::int64_t count = 0;
  std::string table;
  std::int64_t fromTick = 0;
  std::int64_t toTick = 0;
};

// What one run is about.
struct RunSummary {
  using Source = std::pair<std::string, std::string>;  // table, source

  std::int64_t records = 0;
  std::int64_t firstTick = 0;
  std::int64_t lastTick = 0;
  std::int64_t endMs = 0;  // the latest time of an event, from the first tick
  std::int64_t firstUtcMs = kNoUtc;
  std::int64_t lastUtcMs = kNoUtc;
  bool cleanEnd = false;
  bool isCopy = false;        // a stretch of a run, made on request
  std::vector<Source> order;  // in which the sources came
  std::map<Source, SourceSummary> sources;
  std::vector<std::pair<std::string, std::string>> facts;  // of device, vehicle, software: name, last value
  std::vector<Loss> losses;
  std::int64_t lost = 0;
  Driven driven;

  std::int64_t DurationMs() const { return lastTick - firstTick; }
};

// For people.
std::string LossText(const Loss& loss);
const char* HowItEnded(const Run& run, const RunSummary& summary);

RunSummary Summarize(const Run& run, Messages& messages);

}  // namespace reader
