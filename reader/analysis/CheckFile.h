#pragma once

#include <map>
#include <memory>
#include <string>

#include "Findings.h"

namespace reader {

class Recording;

// How a file ends.
struct FileEnd {
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  bool clean = false;
};
using FileEnds = std::map<std::string, FileEnd>;  // by the names of the files, without directories

// Checks a file as such: that its pages and rows are sound, and that its last commit is whole.
// `copy` as of Run::copies.
void CheckFile(const std::string& path, const std::shared_ptr<Recording>& copy, FileEnds& ends,
               Findings& findings);

}  // namespace reader
