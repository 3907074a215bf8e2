#include "Database.h"

namespace store {
namespace {

SqliteCode FirstRow(Statement& statement, sqlite3* database, const std::string& sql) {
  const SqliteCode code = statement.Prepare(database, sql);
  return Ok(code) ? statement.Step() : code;
}

}  // namespace

SqliteCode Database::Open(const std::string& path) {
  return Open(path, SQLITE_OPEN_READWRITE);
}

SqliteCode Database::OpenToRead(const std::string& path) {
  const SqliteCode code = Open(path, SQLITE_OPEN_READONLY);
  return Ok(code) ? KeepWals() : code;
}

SqliteCode Database::OpenForAttaching(const std::string& path) {
  const SqliteCode code = Open(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI);
  return Ok(code) ? KeepWals() : code;
}

SqliteCode Database::Open(const std::string& name, int flags) {
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  return SqliteCode{code};
}

SqliteCode Database::KeepWals() {
  return SqliteCode{sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr)};
}

void Database::LimitWork() {
  constexpr int kSteps = 10'000'000;
  sqlite3_progress_handler(
      handle_.get(), kSteps, [](void*) { return 1; }, nullptr);
}

SqliteCode Database::Execute(const std::string& sql) {
  return SqliteCode{sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr)};
}

SqliteCode Database::Query(const std::string& sql, std::string& result) {
  Statement statement;
  const SqliteCode code = FirstRow(statement, handle_.get(), sql);
  if (code != SqliteCode::kRow) return code;
  result = statement.Text(0);
  return SqliteCode::kOk;
}

SqliteCode Database::Query(const std::string& sql, std::int64_t& result) {
  Statement statement;
  const SqliteCode code = FirstRow(statement, handle_.get(), sql);
  if (code != SqliteCode::kRow) return code;
  result = statement.Integer(0);
  return SqliteCode::kOk;
}

std::int64_t Database::Integer(const std::string& sql, std::int64_t otherwise) {
  Statement statement;
  const bool found = FirstRow(statement, handle_.get(), sql) == SqliteCode::kRow && !statement.IsNull(0);
  return found ? statement.Integer(0) : otherwise;
}

}  // namespace store
