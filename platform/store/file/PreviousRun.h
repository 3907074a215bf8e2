#pragma once

#include <cstdint>
#include <string>

#include "FileNames.h"

namespace store {

// How the run before this one ended, as its last file tells.
struct PreviousRun {
  const char* ended = "none";  // "none", "clean", "cut off", "damaged", "unreadable"
  std::string file;            // its name, without the directory
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  std::int64_t lastUtcMs = 0;
};

// Looks at the newest file in which something was recorded. A WAL that a cut left beside it is folded into
// it, which is the only change ever made to an earlier recording. One that is damaged or too long is left
// alone with its file, as is a file that cannot be read; that is logged. Names of other users' files, or of
// what is no file, are passed over. Takes 100 ms at most, and what it takes to fold 16 MB in.
PreviousRun LookAtPreviousRun(const FileNames& names);

// The highest number of a recording of ours that is there, 0 for none: a name alone, whatever its number, is
// not one. Looks at no more than 100 ms allow; then the next name counts.
std::uint32_t NewestRecording(const FileNames& names, const FileNames::Numbers& numbers);

}  // namespace store
