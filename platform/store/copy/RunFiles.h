#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "FileNames.h"

namespace store {

// The current run of an open store.
struct CurrentRun {
  std::vector<std::uint32_t> files;  // numbers, oldest first
  std::int64_t now = 0;              // arrival tick
};

struct RunFile {
  std::string path;
  std::int64_t firstTick = 0;
  std::int64_t lastTick = 0;  // first tick of the next file, or now
};

// The existing files of a run that have records, oldest first.
struct RunFiles {
  std::vector<RunFile> files;
  std::uint32_t missing = 0;  // files of the run that no longer exist

  // False if a file cannot be read, which is logged, or if there are none. Calls `pace` for each file.
  bool Look(const FileNames& names, const CurrentRun& run, const std::function<void()>& pace);
};

}  // namespace store
