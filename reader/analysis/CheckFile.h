#pragma once

#include <map>
#include <memory>
#include <string>

#include "Findings.h"

namespace reader {

class Recording;

// The end of a file, for the check of records that refer to it.
struct FileEnd {
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  bool clean = false;
};
using FileEnds = std::map<std::string, FileEnd>;  // by file name, without its directory

// Checks one file: its pages and rows are sound, and its last commit is complete. `copy` is the file's entry
// in Run::copies. Adds the file to `ends`.
void CheckFile(const std::string& path, const std::shared_ptr<Recording>& copy, FileEnds& ends,
               Findings& findings);

}  // namespace reader
