#include "Sqlite.h"

int Statement::Prepare(sqlite3* database, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  const int rc =
      sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size() + 1), &statement, nullptr);
  statement_.reset(statement);
  return rc;
}

std::string_view Statement::Text(int column) const {
  const unsigned char* text = sqlite3_column_text(statement_.get(), column);
  if (text == nullptr) return {};
  return {reinterpret_cast<const char*>(text),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

int Connection::Open(const std::string& name, int flags) {
  sqlite3* handle = nullptr;
  const int rc = sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  return rc;
}

std::int64_t Connection::Integer(const std::string& sql, std::int64_t otherwise) {
  Statement statement;
  if (statement.Prepare(Handle(), sql) != SQLITE_OK || statement.Step() != SQLITE_ROW) return otherwise;
  return statement.IsNull(0) ? otherwise : statement.Integer(0);
}
