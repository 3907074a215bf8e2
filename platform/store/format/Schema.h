#pragma once

#include <string>

#include "Record.h"
#include "RunId.h"

// A recording is one SQLite file. Its header says whose it is (application id) and in which schema it is
// written (user version); a file keeps the schema that it was made with.
//
//   Records    One STRICT table for each kind (Tables.h), each with seq, tick, sender_tick, event, then its
//   own
//              columns. seq counts all records of a run in the order of their reports, across its files; no
//              two tables of a file have the same. In that order tick never goes back, once ticks are told.
//   run        One row: the random id of the run, the same in each of its files and in every copy of it.
//   tag_name   Names of the tags (Tags.h).
//   progress   One row: seq and tick of the last record committed. It changes in the transaction that commits
//              them.
//   seal       Empty, or one row for each commit. Then its newest row has the last record committed, and the
//              row of progress means nothing.
//   timeline, record   Views for people; programs of ours never run a view of a file.
//
// What holds in every file, also after a power cut:
//   - Every record up to the last one committed is there, none behind it. A gap in seq is a loss, which a row
//   of
//     loss tells.
//   - A file begins with a row of clock and, where it is not the first of its run, with the full state: the
//   last
//     record of each source, restated (event 2) in the order of the originals. So a file stands alone.
//   - Behind a row of full_state, up to the record that its last_seq names, stands the full state at its
//   tick. It
//     is complete if none of these records is missing. So what was in force at some tick is found between the
//     newest complete full state before that tick and the tick.
//   - UTC follows from clock by the rules of RecordTime.h.
//
// Schema 1 has neither run, seal nor full_state, restates in the order of tables, and never says in
// previous_run that a run ended "damaged".
namespace store {

// The numbers in a recording file's header that say whose it is, and in which form.
constexpr int kApplicationId = 0x4D4D4442;     // "MMDB"
constexpr int kUnfinishedCopyId = 0x4D4D4450;  // "MMDP": not a recording yet
constexpr int kSchemaVersion = 2;

// The statements that make an empty recording: tables, names of the tags, views, progress. The second makes
// one of this run.
std::string CreateSchema();
std::string CreateRecording(const RunId& run);

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

// The id of the run, in a file of schema 2 or later.
inline constexpr const char* kReadRun = "SELECT id FROM run";

}  // namespace store
