#pragma once

#include <string>

#include "Disk.h"
#include "support/TempDir.h"

// The files of a directory, without SQLite's shared memory, which no power cut outlives.
DiskState ReadFiles(const TempDir& dir);

// What a run of ten bookmarks that ended without a close has left: metadata.000001.db with its log.
DiskState RunWithoutClose();

// Makes the directory hold the files whose names begin with the prefix, and nothing else.
void WriteFiles(const DiskState& state, const std::string& prefix, const TempDir& dir);

// Tells the files whose names begin with the prefix from others.
std::size_t Hash(const DiskState& state, const std::string& prefix);
