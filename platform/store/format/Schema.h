#pragma once

#include <string>

#include "Record.h"
#include "RunId.h"

// A recording is one SQLite file. Its header holds the application id and the schema (user version). A file
// keeps the schema that it was created with.
//
//   Records    One STRICT table per kind (Tables.h): seq, tick, sender_tick, event, then its own columns.
//              seq counts all records of a run in the order of their reports, across its files; it is unique
//              across the tables of a file. In that order tick never goes back, once there are ticks.
//   run        One row: the random id of the run, the same in all its files and their copies.
//   tag_name   Names of the tags (Tags.h).
//   seal       One row for each commit, in the same transaction. The newest names the last committed record.
//              Empty in copies and in files of schema 1.
//   progress   One row: seq and tick of the last record. Means nothing (zeros) in a file with seals.
//   timeline, record   Views for people. Our programs never run a view of a file.
//
// True for every file, also after a power cut:
//   - Every record up to the last committed one is there, and none after it. A gap in seq is a loss,
//     described by a row of loss.
//   - A file begins with a row of clock. If it is not the first of its run, the full state follows: the last
//     record of each source, restated (event 2) in the order of the originals. So a file stands alone.
//   - A row of full_state is followed by the full state at its tick, up to the record that its last_seq
//     names. It is complete if none of these records is missing. So the state at any tick follows from the
//     newest complete full state before that tick and the records between them.
//   - UTC follows from clock by the rules of RecordTime.h.
//
// Schema 1 has no tables run, seal and full_state, restates in the order of tables, and never uses "damaged"
// in previous_run.
namespace store {

// Numbers in a recording's header.
constexpr int kApplicationId = 0x4D4D4442;     // "MMDB"
constexpr int kUnfinishedCopyId = 0x4D4D4450;  // "MMDP": not a recording yet
constexpr int kSchemaVersion = 2;

// SQL that creates an empty recording: tables, tag names, views, progress. CreateRecording also adds the run.
std::string CreateSchema();
std::string CreateRecording(const RunId& run);

// INSERT of one record: sequence number, tick, sender tick, event, then the table's columns.
std::string InsertInto(TableId table);
// INSERT of all rows of the table "batch" (BatchTable.h).
std::string InsertFromBatch(TableId table);

// Sequence number and tick of each table's first record, or of its last one.
std::string SelectFirstRecords();
std::string SelectLastRecords();

// The last committed record of a file of schema 2 or later; the same from its seals alone.
inline constexpr const char* kReadLastSeq =
    "SELECT coalesce((SELECT last_seq FROM seal ORDER BY number DESC LIMIT 1), last_seq) FROM progress";
inline constexpr const char* kReadLastSealed =
    "SELECT last_seq, last_tick FROM seal ORDER BY number DESC LIMIT 1";

// The seals of a file, in the order of the columns: number, first_seq, last_seq, last_tick, epoch, hash,
// signature, note.
inline constexpr const char* kInsertSeal = "INSERT INTO seal VALUES(?1,?2,?3,?4,?5,?6,?7,?8)";
inline constexpr const char* kReadSeals = "SELECT * FROM main.seal ORDER BY number";
inline constexpr const char* kReadLastSeal = "SELECT * FROM main.seal ORDER BY number DESC LIMIT 1";

// The id of the run; needs schema 2 or later.
inline constexpr const char* kReadRun = "SELECT id FROM run";

}  // namespace store
