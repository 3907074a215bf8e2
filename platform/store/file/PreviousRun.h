#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "FileNames.h"
#include "seal/Sealer.h"

namespace store {

// How the previous run ended, according to its last recording.
struct PreviousRun {
  const char* ended = "none";  // "none", "clean", "cut off", "damaged", "unreadable"
  std::string file;            // name without the directory
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  std::int64_t lastUtcMs = 0;
  std::optional<seal::Found> seal;  // the last; none if the file has none
};

// Examines the newest file that has records. Folds in a WAL that a power cut left beside it: the only change
// ever made to an earlier recording. Leaves a file unchanged, and logs why, if it is no recording, cannot be
// read, or has a damaged or too long WAL. Skips files of other users and everything that is not a regular
// file. Takes at most 100 ms, plus the time to fold in 16 MB.
PreviousRun LookAtPreviousRun(const FileNames& names);

// Highest number of a recording of ours, 0 if there is none. A file counts by its owner and content, not by
// its name alone. After 100 ms the next name counts unexamined.
std::uint32_t NewestRecording(const FileNames& names, const FileNames::Numbers& numbers);

}  // namespace store
