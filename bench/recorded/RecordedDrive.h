#pragma once

#include <string>
#include <vector>

namespace bench {

// What became of a recording.
struct RecordedDrive {
  std::string text;                   // the drive
  std::size_t lines = 0;              // commands in it
  std::vector<std::string> problems;  // files that cannot be read, damage, and rows that no line can tell
};

// Turns the first run of the recordings at these paths into a drive. Values that were there at the start
// become lines "before"; the times count from the first event after the start. The recordings are not
// changed.
RecordedDrive DriveOf(const std::vector<std::string>& paths);

}  // namespace bench
