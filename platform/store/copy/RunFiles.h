#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "FileNames.h"

namespace store {

// What an open store has recorded in its run so far.
struct CurrentRun {
  std::vector<std::uint32_t> files;  // numbers, in the order in which they were begun
  std::int64_t now = 0;              // arrival tick
};

struct RunFile {
  std::string path;
  std::int64_t firstTick = 0;
  std::int64_t lastTick = 0;  // that of the next file's begin
};

// The files of a run that are there and have records, oldest first.
struct RunFiles {
  std::vector<RunFile> files;
  std::uint32_t missing = 0;  // files that the run had, and that are gone

  // False, and logged, when one of them cannot be read. `pace` is called for each.
  bool Look(const FileNames& names, const CurrentRun& run, const std::function<void()>& pace);
};

}  // namespace store
