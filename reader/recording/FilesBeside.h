#pragma once

#include <string>

namespace reader {

// What lies at a recording's path and beside it, found out without SQLite and without waiting.
struct FilesBeside {
  bool wal = false;
  bool journal = false;
  // Its header says that it is written through a WAL.
  bool isInWalMode = false;
  // Another process has it open, and the index of its WAL is whole.
  bool hasWriter = false;
};

// False and why not: the recording is missing, or it or a file beside it is not a regular file.
bool LookBeside(const std::string& path, FilesBeside& files, std::string& error);

// The index of a live WAL is mapped. Where somebody cuts that file short meanwhile, the program ends with
// a message and exit status 1.
void EndInOrderWhereAMappedFileIsCutShort();

}  // namespace reader
