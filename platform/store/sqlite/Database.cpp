#include "Database.h"

#include <utility>

#include "DescriptorVfs.h"
#include "FileUri.h"

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

SqliteCode Database::OpenHostile(const std::string& path) {
  SqliteCode code = Open(path, SQLITE_OPEN_READWRITE);
  if (Ok(code)) code = KeepWals();
  return Ok(code) ? TrustNothing() : code;
}

SqliteCode Database::OpenHostileAlone(const std::string& path) {
  const std::string uri = FileUri(path, JournalFree("?mode=ro&immutable=1"));
  const SqliteCode code = Open(uri, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
  return Ok(code) ? TrustNothing() : code;
}

SqliteCode Database::OpenForAttaching(int file) {
  const SqliteCode code = Open(kDescriptorName, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, DescriptorVfs(file));
  return Ok(code) ? KeepWals() : code;
}

SqliteCode Database::Open(const std::string& name, int flags, const char* vfs) {
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, vfs);
  handle_.reset(handle);
  return SqliteCode{code};
}

SqliteCode Database::KeepWals() {
  return SqliteCode{sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr)};
}

SqliteCode Database::TrustNothing() {
  constexpr int kMaxBytesOfAValue = 1 << 20;  // no recording has a longer value
  constexpr std::pair<int, int> kSettings[] = {{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                               {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                               {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                               {SQLITE_DBCONFIG_ENABLE_VIEW, 0}};
  (void)sqlite3_limit(handle_.get(), SQLITE_LIMIT_LENGTH, kMaxBytesOfAValue);
  int code = SQLITE_OK;
  for (const auto& [setting, value] : kSettings) {
    if (code == SQLITE_OK) code = sqlite3_db_config(handle_.get(), setting, value, nullptr);
  }
  return SqliteCode{code};
}

void Database::EndWhen(const std::function<bool()>& over) {
  constexpr int kSteps = 1000;
  const auto ask = [](void* function) {
    return (*static_cast<const std::function<bool()>*>(function))() ? 1 : 0;
  };
  sqlite3_progress_handler(handle_.get(), kSteps, ask, const_cast<std::function<bool()>*>(&over));
}

std::string Database::Bytes() const {
  sqlite3_int64 size = 0;
  unsigned char* const bytes = sqlite3_serialize(handle_.get(), "main", &size, 0);
  std::string copied;
  if (bytes != nullptr) copied.assign(reinterpret_cast<char*>(bytes), static_cast<std::size_t>(size));
  sqlite3_free(bytes);
  return copied;
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
