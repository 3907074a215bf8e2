#include "RunFiles.h"

#include <cerrno>

#include "Database.h"
#include "Schema.h"
#include "log/LogLine.h"

namespace store {
namespace {

constexpr LogSource kStoreLog{"DataStore"};

// kNotDatabase: the file was replaced by one with another schema.
SqliteCode ReadFirstTick(const std::string& path, std::int64_t& lastSeq, std::int64_t& firstTick) {
  Database database;
  std::int64_t id = 0;
  std::int64_t version = 0;
  SqliteCode code = database.OpenToRead(path);
  if (Ok(code)) database.LimitWork();
  if (Ok(code)) code = database.Query("PRAGMA application_id", id);
  if (Ok(code)) code = database.Query("PRAGMA user_version", version);
  if (Ok(code) && (id != kApplicationId || version != kSchemaVersion)) code = SqliteCode::kNotDatabase;
  if (Ok(code)) code = database.Query(kReadLastSeq, lastSeq);
  if (Ok(code) && lastSeq != 0) {
    code = database.Query("SELECT min(tick) FROM (" + SelectFirstRecords() + ")", firstTick);
  }
  return code;
}

}  // namespace

bool RunFiles::Look(const FileNames& names, const CurrentRun& run, const std::function<void()>& pace) {
  for (const std::uint32_t number : run.files) {
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
    if (const SqliteCode code = ReadFirstTick(file.path, lastSeq, file.firstTick); !Ok(code)) {
      kStoreLog(kLogError, "Not to be copied: ", file.path, ": ", TextOf(code));
      return false;
    }
    if (lastSeq == 0) continue;
    if (!files.empty()) files.back().lastTick = file.firstTick;
    files.push_back(file);
  }
  return !files.empty();
}

}  // namespace store
