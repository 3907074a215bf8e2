#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

namespace store {

// A prepared statement; results are SQLite's codes.
class Statement {
 public:
  int Prepare(sqlite3* database, const std::string& sql);
  bool Prepared() const { return statement_ != nullptr; }

  void Bind(int index, std::int64_t value) { (void)sqlite3_bind_int64(statement_.get(), index, value); }
  // The text must live until the statement has run.
  void Bind(int index, std::string_view text);
  void BindNull(int index) { (void)sqlite3_bind_null(statement_.get(), index); }

  // SQLITE_ROW, SQLITE_DONE or an error.
  int Step() { return sqlite3_step(statement_.get()); }
  // Runs a statement without rows, ready for the next values; SQLITE_OK or an error.
  int Run();
  void Reset() { (void)sqlite3_reset(statement_.get()); }

  std::int64_t Integer(int column) { return sqlite3_column_int64(statement_.get(), column); }
  std::string Text(int column);

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { (void)sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// One connection to a database file that is there already. Never waits for a lock.
class Database {
 public:
  int Open(const std::string& path);
  // A file that others may be writing: neither it nor its log is changed.
  int OpenToRead(const std::string& path);
  // A file that others are to be attached to, under URIs.
  int OpenForAttaching(const std::string& path);
  // Statements must be gone before.
  void Close() { handle_.reset(); }

  sqlite3* Handle() const { return handle_.get(); }

  // Ends every statement that takes much more work than those that read a sound file.
  void LimitWork();

  int Execute(const std::string& sql);
  // The first column of the first row as text or number; SQLITE_OK, SQLITE_DONE when there is no
  // row, or an error; the result is unchanged then.
  int Query(const std::string& sql, std::string& result);
  int Query(const std::string& sql, std::int64_t& result);

 private:
  int Open(const std::string& path, int flags);
  int KeepLogs();  // those of files whose last user this connection is

  struct CloseHandle {
    void operator()(sqlite3* handle) const { (void)sqlite3_close(handle); }
  };
  std::unique_ptr<sqlite3, CloseHandle> handle_;
};

}  // namespace store
