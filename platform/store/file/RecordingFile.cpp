#include "RecordingFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "Schema.h"
#include "Tables.h"

namespace store {
namespace {

// In this order. Before the log mode is on, nothing less than EXTRA will do: the switch to it goes
// through a rollback journal, and one whose removal a power cut undoes takes the whole file back.
constexpr const char* kBeforeLogMode[] = {
    "PRAGMA synchronous=EXTRA",
    "PRAGMA page_size=1024",  // a commit writes whole pages, and few records at a time
};
constexpr const char* kLogMode = "PRAGMA journal_mode=WAL";
constexpr const char* kAfterLogMode[] = {
    "PRAGMA synchronous=FULL",         // a commit is on the medium when it returns
    "PRAGMA cache_size=-512",          // KiB
    "PRAGMA mmap_size=0",              // a failing medium is an error code, not a signal
    "PRAGMA wal_autocheckpoint=1000",  // pages
    "PRAGMA journal_size_limit=1048576",
};

std::string LogOf(const std::string& path) {
  return path + "-wal";
}

bool Configure(Database& database, const RunId& id) {
  const auto run = [&database](const std::string& sql) { return Ok(database.Execute(sql)); };
  const std::string mark = "BEGIN; PRAGMA application_id=" + std::to_string(kApplicationId) +
                           "; PRAGMA user_version=" + std::to_string(kSchemaVersion) + "; COMMIT";
  if (!std::all_of(std::begin(kBeforeLogMode), std::end(kBeforeLogMode), run) || !run(mark)) return false;
  std::string mode;
  if (!Ok(database.Query(kLogMode, mode)) || mode != "wal") return false;
  return std::all_of(std::begin(kAfterLogMode), std::end(kAfterLogMode), run) && run(CreateRecording(id));
}

}  // namespace

bool RecordingFile::Create(const std::string& path, const RunId& run) {
  if (CreateNewFile(path) != 0) return false;
  path_ = path;
  if (Ok(database_.Open(path)) && Configure(database_, run) && Prepare() && Identify(path_, identity_) == 0 &&
      Identify(LogOf(path_), log_) == 0) {
    return true;
  }
  Finalize();
  database_.Close();
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) (void)unlink((path + suffix).c_str());
  return false;
}

bool RecordingFile::Prepare() {
  sqlite3* const handle = database_.Handle();
  SqliteCode code = rows_.Register(handle);
  if (Ok(code)) code = begin_.Prepare(handle, "BEGIN IMMEDIATE");
  if (Ok(code)) code = commit_.Prepare(handle, "COMMIT");
  if (Ok(code)) code = progress_.Prepare(handle, kUpdateProgress);
  if (Ok(code)) code = readProgress_.Prepare(handle, kReadProgress);
  for (const Table& table : kTables) {
    if (Ok(code)) code = inserts_[table.id].Prepare(handle, InsertFromBatch(table.id));
  }
  return Ok(code);
}

SqliteCode RecordingFile::Write(const Batch& batch, std::size_t maxBytes, std::int64_t& lastSeq) {
  const RecordHeader last = rows_.Take(batch, maxBytes);
  SqliteCode code = begin_.Run();
  if (Ok(code)) code = InsertAll();
  if (Ok(code)) {
    progress_.Bind(1, last.seq);
    progress_.Bind(2, last.tick);
    code = progress_.Run();
  }
  if (Ok(code)) code = commit_.Run();
  if (Ok(code)) {
    lastSeq = last.seq;
  } else if (sqlite3_get_autocommit(database_.Handle()) == 0) {
    (void)database_.Execute("ROLLBACK");
  }
  return code;
}

SqliteCode RecordingFile::InsertAll() {
  for (const Table& table : kTables) {
    if (!rows_.Select(table.id)) continue;
    if (const SqliteCode code = inserts_[table.id].Run(); !Ok(code)) return code;
  }
  return SqliteCode::kOk;
}

SqliteCode RecordingFile::CommittedSeq(std::int64_t& seq) {
  const SqliteCode code = readProgress_.Step();
  if (code == SqliteCode::kRow) seq = readProgress_.Integer(0);
  readProgress_.Reset();
  return code == SqliteCode::kRow ? SqliteCode::kOk : code == SqliteCode::kDone ? SqliteCode::kCorrupt : code;
}

bool RecordingFile::StillThere() {
  const auto gone = [](const std::string& path, FileIdentity& known, bool mayShrink) {
    FileIdentity now;
    const int error = Identify(path, now);
    if (error != 0) return error == ENOENT || error == ENOTDIR;  // else: not known
    if (!now.SameFile(known) || (!mayShrink && now.bytes < known.bytes)) return true;
    known = now;
    return false;
  };
  return !gone(path_, identity_, false) && !gone(LogOf(path_), log_, true);
}

void RecordingFile::Finalize() {
  for (Statement* statement : {&begin_, &commit_, &progress_, &readProgress_}) *statement = Statement();
  inserts_ = {};
}

void RecordingFile::Close() {
  if (!IsOpen()) return;
  Finalize();
  // Without its log mode the file can be read where nothing can be written beside it. What has come
  // in the place of one that is gone is not to be touched; SQLite's own close takes care of that.
  if (StillThere()) (void)database_.Execute("PRAGMA synchronous=EXTRA; PRAGMA journal_mode=DELETE");
  database_.Close();
}

}  // namespace store
