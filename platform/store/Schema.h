#pragma once

#include <string>

#include "Record.h"
#include "store/CurrentSchema.h"

namespace store {

// INSERT of one record: sequence number, tick, sender's tick, event, then the table's columns.
std::string InsertInto(TableId table);
// All rows of the table "batch" (BatchTable.h).
std::string InsertFromBatch(TableId table);

// A wall clock that tells an earlier time (than 2024-01-01) was not set yet.
inline constexpr const char* kTrustedFromUtcMs = "1704067200000";

// Sequence number and tick of each table's first record; of its last one.
std::string SelectFirstRecords();
std::string SelectLastRecords();

// What was committed last, kept in the same transaction as the records.
inline constexpr const char* kUpdateProgress = "UPDATE progress SET last_seq=?1, last_tick=?2";
inline constexpr const char* kReadProgress = "SELECT last_seq FROM progress";

}  // namespace store
