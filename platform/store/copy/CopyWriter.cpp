#include "CopyWriter.h"

#include <algorithm>
#include <cctype>

#include "CopyStatements.h"
#include "Schema.h"
#include "Tables.h"

namespace store {
namespace {

// Nobody sees the file before it is complete, and what fails is thrown away.
constexpr const char* kSettings =
    "PRAGMA page_size=4096; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-2000; "
    "PRAGMA mmap_size=0";

constexpr int kPaceSteps = 10'000;  // of SQLite's machine: a millisecond or so

std::string UriOf(const std::string& path) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || c == '/' || c == '.' || c == '-' || c == '_') {
      uri += c;
    } else {
      uri.append({'%', kHex[byte >> 4], kHex[byte & 15]});
    }
  }
  return uri + "?mode=ro";
}

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

int CopyWriter::Begin(const std::string& path) {
  if (const int rc = database_.OpenForAttaching(path); rc != SQLITE_OK) return rc;
  const auto callPace = [](void* writer) {
    static_cast<CopyWriter*>(writer)->pace_();
    return 0;
  };
  sqlite3_progress_handler(database_.Handle(), kPaceSteps, callPace, this);
  const std::string mark =
      Mark(kUnfinishedCopyId) + "PRAGMA user_version=" + std::to_string(kSchemaVersion) + ";";
  int rc = database_.Execute(kSettings);
  if (rc == SQLITE_OK) rc = database_.Execute(mark);
  return rc == SQLITE_OK ? database_.Execute(CreateSchema()) : rc;
}

int CopyWriter::CopyRun() {
  for (std::size_t i = firstFile_; i < run_.files.size(); ++i) {
    if (const int rc = CopyFrom(run_.files[i], i == firstFile_); rc != SQLITE_OK) return rc;
  }
  return SQLITE_OK;
}

int CopyWriter::CopyFrom(const RunFile& file, bool isFirst) {
  int rc = Attach(file);
  if (rc == SQLITE_OK && isFirst && file.firstTick < range_.from) rc = RestateBegin();
  if (rc == SQLITE_OK && file.firstTick <= range_.to) rc = CopyRecords(file);
  if (rc == SQLITE_OK && file.lastTick > range_.to) rc = RestateLater();
  return rc == SQLITE_OK ? database_.Execute("COMMIT; DETACH source") : rc;
}

// A table that is something else, say an endless view, is not read.
int CopyWriter::Attach(const RunFile& file) {
  int rc = database_.Execute("ATTACH '" + UriOf(file.path) + "' AS source");
  if (rc == SQLITE_OK) rc = database_.Execute("PRAGMA source.cache_size=-500; BEGIN");
  std::int64_t differences = 0;
  if (rc == SQLITE_OK) rc = database_.Query(CountDifferences(), differences);
  return rc == SQLITE_OK && differences != 0 ? SQLITE_NOTADB : rc;
}

int CopyWriter::CopyRecords(const RunFile& file) {
  const bool all = file.firstTick >= range_.from && file.lastTick <= range_.to;
  int rc = SQLITE_OK;
  for (const Table& table : kTables) {
    if (rc == SQLITE_OK) rc = Run(all ? CopyAll(table.id) : CopyBetween(table.id), {range_.from, range_.to});
  }
  return rc;
}

int CopyWriter::LastSeq(std::int64_t& seq) {
  return database_.Query("SELECT max(seq) FROM (" + SelectLastRecords() + ")", seq);
}

int CopyWriter::AddOrigin(const std::string& store, std::uint32_t firstAsked, std::uint32_t lastAsked) {
  std::int64_t lastSeq = 0;
  Statement insert;
  int rc = LastSeq(lastSeq);
  if (rc == SQLITE_OK) rc = insert.Prepare(database_.Handle(), InsertInto(kCopyTable));
  if (rc != SQLITE_OK) return rc;
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

int CopyWriter::End(const std::string& store, std::uint32_t firstAsked, std::uint32_t lastAsked) {
  int rc = AddOrigin(store, firstAsked, lastAsked);
  if (rc == SQLITE_OK) rc = Run("UPDATE progress SET (last_seq, last_tick) = (SELECT seq, tick FROM copy)");
  if (rc == SQLITE_OK) rc = database_.Execute(Mark(kApplicationId));
  database_.Close();
  return rc;
}

int CopyWriter::Run(const std::string& sql, std::initializer_list<std::int64_t> values) {
  Statement statement;
  if (const int rc = statement.Prepare(database_.Handle(), sql); rc != SQLITE_OK) return rc;
  int index = 0;
  for (const std::int64_t value : values) statement.Bind(++index, value);
  return statement.Run();
}

}  // namespace store
