#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Messages.h"
#include "Utc.h"

namespace reader {

class Recording;

// One run of the process: its files, in their order.
struct Run {
  int number = 0;  // from 1, in the order of time
  std::vector<std::string> files;
  // Of each file: the recording where it is read through a private copy, which is made once; else null.
  std::vector<std::shared_ptr<Recording>> copies;
  bool beginIsMissing = false;  // the first file follows another one
  bool live = false;            // its last file is being written
  std::int64_t records = 0;     // about how many
  std::int64_t lastSeq = 0;     // of the last one
  std::int64_t firstTick = 0;
  std::int64_t lastTick = 0;
  std::int64_t firstUtcMs = kNoUtc;
};

// Joins files to runs, in the order of the times at which these began. What cannot be opened is complained
// about and belongs to none; a file of another schema, or without its WAL, is told about.
std::vector<Run> FindRuns(const std::vector<std::string>& files, Messages& messages);

}  // namespace reader
