#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Database.h"

namespace reader {

// A prepared statement that limits the work of each step. Returns SQLite result codes.
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

  int Prepare(sqlite3* database, const std::string& sql);
  // Returns SQLITE_ROW, SQLITE_DONE or an error; SQLITE_INTERRUPT if the step exceeds the work limit.
  int Step();
};

// A connection to an untrusted file: its views, triggers and functions are disabled, memory and work are
// limited. Destroy all statements before closing it.
class Connection : private store::Database {
 public:
  using store::Database::Close;
  using store::Database::Handle;
  using store::Database::Integer;
  using store::Database::IsOpen;

  int Open(const std::string& name, int flags);
  int Execute(const std::string& sql) { return static_cast<int>(store::Database::Execute(sql)); }
  // Text of the last error.
  std::string Error() const;
};

// Error text for people, also for exceeded limits.
std::string ErrorText(int rc);

// Quotes a name from a file as an SQL identifier.
std::string Quoted(std::string_view name);

}  // namespace reader
