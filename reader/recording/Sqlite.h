#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// A prepared statement; results are SQLite's codes.
class Statement {
 public:
  int Prepare(sqlite3* database, const std::string& sql);
  bool Prepared() const { return statement_ != nullptr; }

  void Bind(int index, std::int64_t value) { (void)sqlite3_bind_int64(statement_.get(), index, value); }
  // SQLITE_ROW, SQLITE_DONE or an error.
  int Step() { return sqlite3_step(statement_.get()); }
  void Reset() { (void)sqlite3_reset(statement_.get()); }

  bool IsNull(int column) const { return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL; }
  std::int64_t Integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
  // Valid until the next step or reset.
  std::string_view Text(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { (void)sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// A connection. Statements must be gone before it closes.
class Connection {
 public:
  int Open(const std::string& name, int flags);
  void Close() { handle_.reset(); }
  bool IsOpen() const { return handle_ != nullptr; }
  sqlite3* Handle() const { return handle_.get(); }

  // What went wrong last.
  std::string Error() const { return sqlite3_errmsg(handle_.get()); }

  int Execute(const char* sql) { return sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr); }
  // The first column of the first row; `otherwise` where there is none.
  std::int64_t Integer(const std::string& sql, std::int64_t otherwise);

 private:
  struct CloseHandle {
    void operator()(sqlite3* handle) const { (void)sqlite3_close(handle); }
  };
  std::unique_ptr<sqlite3, CloseHandle> handle_;
};
