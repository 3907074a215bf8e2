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

int Statement::Prepare(sqlite3* database, const std::string& sql) {
  looksInStep = 0;
  return static_cast<int>(store::Statement::Prepare(database, sql));
}

int Statement::Step() {
  looksInStep = 0;
  return static_cast<int>(store::Statement::Step());
}

int Connection::Open(const std::string& name, int flags) {
  const store::SqliteCode code = store::Database::Open(name, flags);
  if (!store::Ok(code)) return static_cast<int>(code);
  Limit(Handle());
  Distrust(Handle());
  return SQLITE_OK;
}

std::string Connection::Error() const {
  const int rc = sqlite3_errcode(Handle());
  return rc == SQLITE_INTERRUPT || rc == SQLITE_NOMEM ? ErrorText(rc) : store::Database::Error();
}

std::string ErrorText(int rc) {
  switch (rc) {
    case SQLITE_INTERRUPT:
      return "reading it takes more work than any recording does";
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
      return "reading it takes more memory than any recording does";
    default:
      return sqlite3_errstr(rc);
  }
}

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

}  // namespace reader
