#include "Statement.h"

namespace store {

SqliteCode Statement::Prepare(sqlite3* database, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  const int code =
      sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size() + 1), &statement, nullptr);
  statement_.reset(statement);
  return SqliteCode{code};
}

void Statement::Bind(int index, std::string_view text) {
  // A null pointer would bind NULL.
  const char* data = text.empty() ? "" : text.data();
  (void)sqlite3_bind_text(statement_.get(), index, data, static_cast<int>(text.size()), nullptr);
}

void Statement::Bind(int index, std::span<const unsigned char> bytes) {
  (void)sqlite3_bind_blob(statement_.get(), index, bytes.data(), static_cast<int>(bytes.size()), nullptr);
}

SqliteCode Statement::Run() {
  const SqliteCode code = Step();
  const SqliteCode reset{sqlite3_reset(statement_.get())};
  if (code == SqliteCode::kDone) return SqliteCode::kOk;
  return Ok(reset) ? code : reset;
}

std::string_view Statement::Text(int column) const {
  const unsigned char* text = sqlite3_column_text(statement_.get(), column);
  if (text == nullptr) return {};
  return {reinterpret_cast<const char*>(text),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

std::span<const unsigned char> Statement::Blob(int column) const {
  const void* bytes = sqlite3_column_blob(statement_.get(), column);
  if (bytes == nullptr) return {};
  return {static_cast<const unsigned char*>(bytes),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

}  // namespace store
