#include "Database.h"

namespace store {

int Statement::Prepare(sqlite3* database, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  const int rc =
      sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size() + 1), &statement, nullptr);
  statement_.reset(statement);
  return rc;
}

void Statement::Bind(int index, std::string_view text) {
  // A null pointer would bind NULL.
  const char* data = text.empty() ? "" : text.data();
  (void)sqlite3_bind_text(statement_.get(), index, data, static_cast<int>(text.size()), nullptr);
}

int Statement::Run() {
  const int rc = Step();
  const int reset = sqlite3_reset(statement_.get());
  return rc == SQLITE_DONE ? SQLITE_OK : reset != SQLITE_OK ? reset : rc;
}

std::string Statement::Text(int column) {
  const unsigned char* text = sqlite3_column_text(statement_.get(), column);
  return text == nullptr ? std::string() : reinterpret_cast<const char*>(text);
}

int Database::Open(const std::string& path) {
  return Open(path, SQLITE_OPEN_READWRITE);
}

int Database::OpenToRead(const std::string& path) {
  const int rc = Open(path, SQLITE_OPEN_READONLY);
  return rc == SQLITE_OK ? KeepLogs() : rc;
}

int Database::OpenForAttaching(const std::string& path) {
  const int rc = Open(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI);
  return rc == SQLITE_OK ? KeepLogs() : rc;
}

int Database::Open(const std::string& path, int flags) {
  sqlite3* handle = nullptr;
  const int rc = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  return rc;
}

int Database::KeepLogs() {
  return sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

void Database::LimitWork() {
  constexpr int kSteps = 10'000'000;
  sqlite3_progress_handler(
      handle_.get(), kSteps, [](void*) { return 1; }, nullptr);
}

int Database::Execute(const std::string& sql) {
  return sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr);
}

int Database::Query(const std::string& sql, std::string& result) {
  Statement statement;
  if (const int rc = statement.Prepare(handle_.get(), sql); rc != SQLITE_OK) return rc;
  const int rc = statement.Step();
  if (rc != SQLITE_ROW) return rc;
  result = statement.Text(0);
  return SQLITE_OK;
}

int Database::Query(const std::string& sql, std::int64_t& result) {
  Statement statement;
  if (const int rc = statement.Prepare(handle_.get(), sql); rc != SQLITE_OK) return rc;
  const int rc = statement.Step();
  if (rc != SQLITE_ROW) return rc;
  result = statement.Integer(0);
  return SQLITE_OK;
}

}  // namespace store
