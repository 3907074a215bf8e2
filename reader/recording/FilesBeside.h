#pragma once

#include <string>

namespace reader {

// The files at and beside a recording's path. Found without SQLite and without waiting.
struct FilesBeside {
  bool wal = false;
  bool journal = false;
  // The recording's header says WAL mode.
  bool isInWalMode = false;
  // Another process has the recording open, and its WAL index is complete.
  bool hasWriter = false;
};

// Returns false and sets `error` if the recording is missing, or if it, its WAL or its WAL index is not a
// regular file.
bool LookBeside(const std::string& path, FilesBeside& files, std::string& error);

// Installs a SIGBUS handler. SQLite maps the index of a live WAL; if another process truncates that file, the
// program ends with a message and exit status 1.
void EndInOrderWhereAMappedFileIsCutShort();

}  // namespace reader
