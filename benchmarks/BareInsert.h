#pragma once

#include <string>

// The contents of a recording: records, those of them that tell of a change, and the room for them in the
// sequence; the last equals the first unless some were lost.
struct Recorded {
  long long records = 0;
  long long changes = 0;
  long long numbers = 0;
};
Recorded CountRecords(const std::string& recording);

// CPU seconds that prepared statements, one for each record, take to insert all records of the recording
// into a new file at `path`, in their order, in transactions of as many as the store's at full load. The
// file has the same tables and settings.
double InsertBare(const std::string& recording, const std::string& path);
