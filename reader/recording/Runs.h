#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Messages.h"
#include "Utc.h"

namespace reader {

class Recording;

// One run of the process, with its files in order.
struct Run {
  int number = 0;  // from 1, in order of time
  std::vector<std::string> files;
  // For each file: its open private copy, or null.
  std::vector<std::shared_ptr<Recording>> copies;
  bool beginIsMissing = false;  // the run's first file is not among the input
  bool live = false;            // the last file is being written
  std::int64_t records = 0;     // approximate
  std::int64_t lastSeq = 0;
  std::int64_t firstTick = 0;
  std::int64_t lastTick = 0;
  std::int64_t firstUtcMs = kNoUtc;
};

// Joins files to runs, sorted by start time. Reports files that cannot be opened and leaves them out. Notes
// files with another schema or a missing WAL.
std::vector<Run> FindRuns(const std::vector<std::string>& files, Messages& messages);

}  // namespace reader
