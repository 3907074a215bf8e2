#pragma once

#include <cstdint>
#include <string>

#include "FileNames.h"

namespace store {

// How the run before this one ended, as its last file tells.
struct PreviousRun {
  const char* ended = "none";  // "none", "clean", "cut off", "unreadable"
  std::string file;            // its name, without the directory
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  std::int64_t lastUtcMs = 0;
};

// Looks at the newest file in which something was recorded. A log that a cut left beside it is folded into
// it; a file that cannot be read, or whose log is too long for that, is left alone and logged.
PreviousRun LookAtPreviousRun(const FileNames& names);

}  // namespace store
