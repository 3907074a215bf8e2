#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Database.h"

namespace reader {

// A prepared statement whose steps have a limit of work. Results are SQLite's codes.
class Statement : private store::Statement {
 public:
  using store::Statement::Bind;
  using store::Statement::Integer;
  using store::Statement::IsNull;
  using store::Statement::IsPrepared;
  using store::Statement::Reset;
  using store::Statement::Text;

  int Prepare(sqlite3* database, const std::string& sql);
  // SQLITE_ROW, SQLITE_DONE or an error: SQLITE_INTERRUPT where one step takes more work than any step on a
  // sound recording.
  int Step();
};

// A connection to a file that is not trusted: its views, triggers and functions are not used, memory and
// work have limits. Statements must be gone before it closes.
class Connection : private store::Database {
 public:
  using store::Database::Close;
  using store::Database::Handle;
  using store::Database::Integer;
  using store::Database::IsOpen;

  int Open(const std::string& name, int flags);
  int Execute(const std::string& sql) { return static_cast<int>(store::Database::Execute(sql)); }
  // What went wrong last.
  std::string Error() const;
};

// For people; also for the codes that mean that a limit was passed.
std::string ErrorText(int rc);

// A name from a file, in the quotes in which SQL takes it for a name whatever it holds.
std::string Quoted(std::string_view name);

}  // namespace reader
