#include "PreviousRun.h"

#include "Database.h"
#include "Schema.h"
#include "log/LogLine.h"

namespace store {
namespace {

constexpr LogSource log{"DataStore"};

// Folding in happens at start-up, which must not wait for it for long.
constexpr std::uint64_t kMaxLogBytes = std::uint64_t{16} << 20;

constexpr const char* kLastUtc =
    "SELECT utc_ms + last_tick - tick FROM clock, progress WHERE seq <= last_seq ORDER BY seq DESC LIMIT 1";

// A file that was being begun when the power went, or whose first commit never came, tells nothing.
SqliteCode CountRecorded(Database& database, std::int64_t& lastSeq) {
  std::int64_t tables = 0;
  SqliteCode code = database.Query("SELECT count(*) FROM sqlite_master", tables);
  if (!Ok(code) || tables == 0) return code;
  std::int64_t id = 0;
  code = database.Query("PRAGMA application_id", id);
  if (Ok(code) && id != kApplicationId) code = SqliteCode::kNotDatabase;
  return Ok(code) ? database.Query("SELECT last_seq FROM progress", lastSeq) : code;
}

bool Read(const std::string& path, PreviousRun& run) {
  FileIdentity walLog;
  if (Identify(path + "-wal", walLog) == 0 && walLog.bytes > kMaxLogBytes) {
    log(kLogError, "Left alone: the log of ", path, " is too long");
    return false;
  }
  Database database;
  std::int64_t clean = 0;
  SqliteCode code = database.Open(path);
  if (Ok(code)) database.LimitWork();
  if (Ok(code)) code = CountRecorded(database, run.lastSeq);
  if (Ok(code) && run.lastSeq == 0) return true;
  if (Ok(code)) code = database.Query("SELECT last_tick FROM progress", run.lastTick);
  if (Ok(code)) code = database.Query("SELECT EXISTS(SELECT 1 FROM run_end)", clean);
  if (!Ok(code)) {
    log(kLogError, "Left alone: ", path, " cannot be read: ", TextOf(code));
    return false;
  }
  (void)database.Query(kLastUtc, run.lastUtcMs);
  run.ended = clean != 0 ? "clean" : "cut off";
  (void)database.Execute("PRAGMA synchronous=EXTRA; PRAGMA journal_mode=DELETE");
  return true;
}

}  // namespace

PreviousRun LookAtPreviousRun(const FileNames& names) {
  std::vector<std::uint32_t> numbers;
  std::uint32_t highest = 0;
  if (!names.List(numbers, highest)) return {};
  for (const std::uint32_t number : numbers) {
    const std::string path = names.PathOf(number);
    FileIdentity identity;
    if (Identify(path, identity) != 0 || identity.bytes == 0) continue;
    PreviousRun run;
    run.file = NameOf(path);
    if (!Read(path, run)) {
      run.ended = "unreadable";
    } else if (run.lastSeq == 0) {
      continue;
    }
    return run;
  }
  return {};
}

}  // namespace store
