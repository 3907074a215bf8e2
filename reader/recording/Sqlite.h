#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Database.h"

namespace reader {

using store::SqliteCode;

// A prepared statement that limits the work of each step.
class Statement : private store::Statement {
 public:
  using store::Statement::Bind;
  using store::Statement::Blob;
  using store::Statement::Integer;
  using store::Statement::IsNull;
  using store::Statement::IsPrepared;
  using store::Statement::Reset;
  using store::Statement::Text;
  using store::Statement::Type;

  SqliteCode Prepare(sqlite3* database, const std::string& sql);
  // kRow, kDone or an error; kInterrupt if the step exceeds the work limit.
  SqliteCode Step();
};

// A connection to an untrusted file: its views, triggers and functions are disabled, memory and work are
// limited. Destroy all statements before closing it.
class Connection : private store::Database {
 public:
  using store::Database::Close;
  using store::Database::Execute;
  using store::Database::Handle;
  using store::Database::Integer;
  using store::Database::IsOpen;

  SqliteCode Open(const std::string& name, int flags);
  // Text of the last error.
  std::string Error() const;
};

// Error text for people, also for exceeded limits.
std::string ErrorText(SqliteCode code);

// Quotes a name from a file as an SQL identifier.
std::string Quoted(std::string_view name);

}  // namespace reader
