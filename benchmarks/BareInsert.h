#pragma once

#include <string>

// Counts of a recording: records, records of changes, and sequence numbers from the first to the last record.
// If `numbers` exceeds `records`, records were lost.
struct Recorded {
  long long records = 0;
  long long changes = 0;
  long long numbers = 0;
};
Recorded CountRecords(const std::string& recording);

// CPU seconds for inserting all records of the recording, in order, into a new file at `path`. Runs one
// prepared statement per record, in transactions of the size that the store has at full load. The file has
// the same tables and settings as a recording.
double InsertBare(const std::string& recording, const std::string& path);
