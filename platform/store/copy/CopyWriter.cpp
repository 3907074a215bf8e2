#include "CopyWriter.h"

#include <algorithm>
#include <limits>

#include "CopyStatements.h"
#include "FileUri.h"
#include "JournalFreeVfs.h"
#include "Schema.h"
#include "Tables.h"

namespace store {
namespace {

// Needs no journal and no sync: nobody sees an incomplete copy, and a failed one is removed.
constexpr const char* kSettings =
    "PRAGMA page_size=4096; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-2000; "
    "PRAGMA mmap_size=0";

constexpr int kPaceSteps = 10'000;  // of SQLite's virtual machine: about a millisecond

std::string Mark(int applicationId) {
  return "PRAGMA application_id=" + std::to_string(applicationId) + ";";
}

}  // namespace

CopyWriter::CopyWriter(const RunFiles& run, const TickRange& range, std::function<void()> pace)
    : run_(run), range_(range), pace_(std::move(pace)) {
  for (std::size_t i = 1; i < run.files.size(); ++i) {
    if (run.files[i].firstTick < range.from) firstFile_ = i;
    if (run.files[i].firstTick <= range.to) lastFile_ = i;
  }
}

SqliteCode CopyWriter::Begin(int file) {
  if (const SqliteCode code = database_.OpenForAttaching(file); !Ok(code)) return code;
  const auto callPace = [](void* writer) {
    static_cast<CopyWriter*>(writer)->pace_();
    return 0;
  };
  sqlite3_progress_handler(database_.Handle(), kPaceSteps, callPace, this);
  const std::string mark =
      Mark(kUnfinishedCopyId) + "PRAGMA user_version=" + std::to_string(kSchemaVersion) + ";";
  SqliteCode code = database_.Execute(kSettings);
  if (Ok(code)) code = database_.Execute(mark);
  return Ok(code) ? database_.Execute(CreateSchema()) : code;
}

SqliteCode CopyWriter::CopyRun() {
  for (std::size_t i = firstFile_; i < run_.files.size(); ++i) {
    if (const SqliteCode code = CopyFrom(run_.files[i], i == firstFile_); !Ok(code)) return code;
  }
  return SqliteCode::kOk;
}

SqliteCode CopyWriter::CopyFrom(const RunFile& file, bool isFirst) {
  SqliteCode code = Attach(file);
  if (Ok(code)) code = FindStretch();
  if (Ok(code) && isFirst) code = Run("INSERT INTO main.run SELECT id FROM source.run LIMIT 1");
  if (Ok(code) && isFirst && file.firstTick < range_.from) code = RestateBegin();
  if (Ok(code) && file.firstTick <= range_.to) code = CopyRecords(file);
  if (Ok(code) && file.lastTick > range_.to) code = RestateLater();
  return Ok(code) ? database_.Execute("COMMIT; DETACH source") : code;
}

// Rejects a file with another schema: a table could be an endless view there.
SqliteCode CopyWriter::Attach(const RunFile& file) {
  SqliteCode code =
      database_.Execute("ATTACH '" + FileUri(file.path, JournalFree("?mode=ro")) + "' AS source");
  if (Ok(code)) code = database_.Execute("PRAGMA source.cache_size=-500; BEGIN");
  std::int64_t differences = 0;
  if (Ok(code)) code = database_.Query(CountDifferences(), differences);
  return Ok(code) && differences != 0 ? SqliteCode::kNotDatabase : code;
}

// Makes the cost of a copy depend on its size, not on the size of the file. Without full states the stretch
// is the whole file.
SqliteCode CopyWriter::FindStretch() {
  lowestSeq_ = std::numeric_limits<std::int64_t>::min();
  highestSeq_ = std::numeric_limits<std::int64_t>::max();
  Statement before;
  Statement after;
  SqliteCode code = before.Prepare(database_.Handle(), SelectFullStatesBefore());
  if (Ok(code)) code = after.Prepare(database_.Handle(), SelectFullStateAfter());
  if (!Ok(code)) return code;
  after.Bind(1, range_.to);
  if (after.Step() == SqliteCode::kRow) highestSeq_ = after.Integer(0);
  before.Bind(1, range_.from);
  bool complete = false;
  while (Ok(code) && !complete && before.Step() == SqliteCode::kRow) {
    code = IsComplete(before.Integer(0), before.Integer(1), complete);
    if (complete) lowestSeq_ = before.Integer(0);
  }
  return code;
}

// A full state is incomplete if some of its records were lost.
SqliteCode CopyWriter::IsComplete(std::int64_t mark, std::int64_t lastSeq, bool& complete) {
  Statement count;
  const SqliteCode code = count.Prepare(database_.Handle(), CountRecords());
  if (!Ok(code)) return code;
  count.Bind(1, mark);
  count.Bind(2, lastSeq);
  complete = count.Step() == SqliteCode::kRow && lastSeq > mark && count.Integer(0) - 1 == lastSeq - mark;
  return code;
}

SqliteCode CopyWriter::CopyRecords(const RunFile& file) {
  const bool all = file.firstTick >= range_.from && file.lastTick <= range_.to;
  SqliteCode code = SqliteCode::kOk;
  for (const Table& table : kTables) {
    if (Ok(code))
      code = Run(all ? CopyAll(table.id) : CopyBetween(table.id),
                 {range_.from, range_.to, lowestSeq_, highestSeq_});
  }
  return code;
}

SqliteCode CopyWriter::LastSeq(std::int64_t& seq) {
  return database_.Query("SELECT max(seq) FROM (" + SelectLastRecords() + ")", seq);
}

SqliteCode CopyWriter::AddOrigin(const std::string& store, std::uint32_t firstAsked,
                                 std::uint32_t lastAsked) {
  std::int64_t lastSeq = 0;
  Statement insert;
  SqliteCode code = LastSeq(lastSeq);
  if (Ok(code)) code = insert.Prepare(database_.Handle(), InsertInto(kCopyTable));
  if (!Ok(code)) return code;
  const std::string firstName = NameOf(run_.files[firstFile_].path);
  const std::string lastName = NameOf(run_.files[lastFile_].path);
  const std::int64_t to = std::min(range_.to, run_.files.back().lastTick);
  int index = 0;
  insert.Bind(++index, lastSeq + 1);
  insert.Bind(++index, to);
  insert.BindNull(++index);
  insert.Bind(++index, static_cast<std::int64_t>(Event::kChange));
  insert.Bind(++index, store);
  insert.Bind(++index, firstName);
  insert.Bind(++index, lastName);
  insert.Bind(++index, std::int64_t{run_.missing});
  insert.Bind(++index, std::int64_t{firstAsked});
  insert.Bind(++index, std::int64_t{lastAsked});
  insert.Bind(++index, std::max(range_.from, run_.files.front().firstTick));
  insert.Bind(++index, to);
  return insert.Run();
}

SqliteCode CopyWriter::End(const std::string& store, std::uint32_t firstAsked, std::uint32_t lastAsked) {
  SqliteCode code = AddOrigin(store, firstAsked, lastAsked);
  if (Ok(code)) code = Run("UPDATE progress SET (last_seq, last_tick) = (SELECT seq, tick FROM copy)");
  if (Ok(code)) code = database_.Execute(Mark(kApplicationId));
  database_.Close();
  return code;
}

SqliteCode CopyWriter::Run(const std::string& sql, std::initializer_list<std::int64_t> values) {
  Statement statement;
  if (const SqliteCode code = statement.Prepare(database_.Handle(), sql); !Ok(code)) return code;
  int index = 0;
  for (const std::int64_t value : values) statement.Bind(++index, value);
  return statement.Run();
}

}  // namespace store
