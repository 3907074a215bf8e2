#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Messages.h"

// One run of the process: its files, in their order.
struct Run {
  int number = 0;  // from 1
  std::vector<std::string> files;
  bool beginIsMissing = false;  // the first file follows another one
  bool live = false;            // its last file is being written
  std::int64_t records = 0;     // about how many
  std::int64_t lastSeq = 0;     // of the last one
};

// Joins files to runs. What cannot be opened is complained about and belongs to none; so are files of
// another schema, and what they miss.
std::vector<Run> FindRuns(const std::vector<std::string>& files, Messages& messages);
