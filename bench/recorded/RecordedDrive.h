#pragma once

#include <string>
#include <vector>

#include "Replay.h"

namespace bench {

// The drive that a recording turns into.
struct RecordedDrive {
  std::string text;                   // the drive
  std::size_t lines = 0;              // commands in the drive
  std::vector<std::string> problems;  // unreadable files, damage, rows without a command
};

// Turns one run of the recordings at these paths into a drive; number 0 means the first. The values at the
// start become lines "before"; times count from the first event after the start. Does not change the
// recordings.
RecordedDrive DriveOf(const std::vector<std::string>& paths, int number);

// The problem that a drive holds one of so many runs.
std::string OtherRuns(std::size_t count);

// Turns an open replay that keeps its ticks into a drive. Its lines have the bytes of each item and message,
// so it lacks nothing that a replay has.
RecordedDrive ExactDriveOf(Replay& replay);

}  // namespace bench
