#pragma once

#include <string>

#include "Record.h"

namespace store {

// The numbers in a recording file's header that say whose it is, and in which form.
constexpr int kApplicationId = 0x4D4D4442;     // "MMDB"
constexpr int kUnfinishedCopyId = 0x4D4D4450;  // "MMDP": not a recording yet
constexpr int kSchemaVersion = 1;

// The statements that make an empty recording file: tables, names of the tags, views, progress.
std::string CreateSchema();

// INSERT of one record: sequence number, tick, sender's tick, event, then the table's columns.
std::string InsertInto(TableId table);
// All rows of the table "batch" (BatchTable.h).
std::string InsertFromBatch(TableId table);

// Sequence number and tick of each table's first record; of its last one.
std::string SelectFirstRecords();
std::string SelectLastRecords();

// What was committed last, kept in the same transaction as the records.
inline constexpr const char* kUpdateProgress = "UPDATE progress SET last_seq=?1, last_tick=?2";
inline constexpr const char* kReadProgress = "SELECT last_seq FROM progress";

}  // namespace store
