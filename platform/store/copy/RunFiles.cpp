#include "RunFiles.h"

#include <cerrno>

#include "Database.h"
#include "Schema.h"
#include "log/LogLine.h"

namespace store {
namespace {

constexpr LogSource log{"DataStore"};

// What is no recording of this schema has come in the place of one.
int ReadFirstTick(const std::string& path, std::int64_t& lastSeq, std::int64_t& firstTick) {
  Database database;
  std::int64_t id = 0;
  std::int64_t version = 0;
  int rc = database.OpenToRead(path);
  if (rc == SQLITE_OK) database.LimitWork();
  if (rc == SQLITE_OK) rc = database.Query("PRAGMA application_id", id);
  if (rc == SQLITE_OK) rc = database.Query("PRAGMA user_version", version);
  if (rc == SQLITE_OK && (id != kApplicationId || version != kSchemaVersion)) rc = SQLITE_NOTADB;
  if (rc == SQLITE_OK) rc = database.Query(kReadProgress, lastSeq);
  if (rc == SQLITE_OK && lastSeq != 0) {
    rc = database.Query("SELECT min(tick) FROM (" + SelectFirstRecords() + ")", firstTick);
  }
  return rc;
}

}  // namespace

bool RunFiles::Look(const FileNames& names, const CurrentRun& run, const std::function<void()>& pace) {
  for (std::uint32_t number = run.firstFile; number <= run.lastFile; ++number) {
    pace();
    RunFile file;
    file.path = names.PathOf(number);
    file.lastTick = run.now;
    FileIdentity identity;
    if (Identify(file.path, identity) == ENOENT) {
      ++missing;
      continue;
    }
    std::int64_t lastSeq = 0;
    if (const int rc = ReadFirstTick(file.path, lastSeq, file.firstTick); rc != SQLITE_OK) {
      log(kLogError, "Not to be copied: ", file.path, ": ", sqlite3_errstr(rc));
      return false;
    }
    if (lastSeq == 0) continue;
    if (!files.empty()) files.back().lastTick = file.firstTick;
    files.push_back(file);
  }
  return !files.empty();
}

}  // namespace store
