#include "Sqlite.h"

namespace reader {
namespace {

// No sound recording comes near these limits. The largest step, the integrity check of 256 MB, takes some
// hundred million operations; reading needs a few megabytes.
constexpr int kOperationsBetween = 1'000'000;
constexpr int kMostLooks = 1500;
constexpr sqlite3_int64 kMostMemoryBytes = sqlite3_int64{256} << 20;
constexpr int kMostValueBytes = 16 << 20;

int looksInStep = 0;  // since the current step began

int LookAtWork(void* /*context*/) {
  return ++looksInStep > kMostLooks ? 1 : 0;
}

void Limit(sqlite3* handle) {
  (void)sqlite3_hard_heap_limit64(kMostMemoryBytes);
  (void)sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kMostValueBytes);
  sqlite3_progress_handler(handle, kOperationsBetween, LookAtWork, nullptr);
}

void Distrust(sqlite3* handle) {
  for (const int off : {SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_TRIGGER,
                        SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION}) {
    (void)sqlite3_db_config(handle, off, 0, nullptr);
  }
  (void)sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

}  // namespace

SqliteCode Statement::Prepare(sqlite3* database, const std::string& sql) {
  looksInStep = 0;
  return store::Statement::Prepare(database, sql);
}

SqliteCode Statement::Step() {
  looksInStep = 0;
  return store::Statement::Step();
}

SqliteCode Connection::Open(const std::string& name, int flags) {
  const SqliteCode code = store::Database::Open(name, flags);
  if (!Ok(code)) return code;
  Limit(Handle());
  Distrust(Handle());
  return code;
}

std::string Connection::Error() const {
  const SqliteCode code = ErrorCode();
  const bool pastLimit = code == SqliteCode::kInterrupt || code == SqliteCode::kNoMemory;
  return pastLimit ? ErrorText(code) : store::Database::Error();
}

std::string ErrorText(SqliteCode code) {
  switch (code) {
    case SqliteCode::kInterrupt:
      return "reading it takes more work than any recording does";
    case SqliteCode::kNoMemory:
    case SqliteCode::kTooBig:
      return "reading it takes more memory than any recording does";
    default:
      return TextOf(code);
  }
}

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

}  // namespace reader
