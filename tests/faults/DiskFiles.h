#pragma once

#include <string>

#include "Disk.h"
#include "support/TempDir.h"

// Reads the files of a directory. Leaves out SQLite's shared memory, which a power cut deletes.
DiskState ReadFiles(const TempDir& dir);

// The files of a run of ten bookmarks that ended without a close: metadata.000001.db with its WAL,
// sealed with this key.
DiskState RunWithoutClose(const std::string& keyFile = {});

// Replaces the content of the directory by the files whose names begin with the prefix.
void WriteFiles(const DiskState& state, const std::string& prefix, const TempDir& dir);

// Hashes the files whose names begin with the prefix.
std::size_t Hash(const DiskState& state, const std::string& prefix);
