#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "SqliteCode.h"

namespace store {

// A prepared statement. Columns count from 0, parameters from 1.
class Statement {
 public:
  SqliteCode Prepare(sqlite3* database, const std::string& sql);
  bool IsPrepared() const { return statement_ != nullptr; }

  void Bind(int index, std::int64_t value) { (void)sqlite3_bind_int64(statement_.get(), index, value); }
  // The text must live until the statement has run.
  void Bind(int index, std::string_view text);
  // The bytes, too. Not for no bytes: bind NULL.
  void Bind(int index, std::span<const unsigned char> bytes);
  void BindNull(int index) { (void)sqlite3_bind_null(statement_.get(), index); }
  int ParameterCount() const { return sqlite3_bind_parameter_count(statement_.get()); }

  // kRow, kDone or an error.
  SqliteCode Step() { return SqliteCode{sqlite3_step(statement_.get())}; }
  // Runs a statement that returns no rows, and resets it; kOk or an error.
  SqliteCode Run();
  void Reset() { (void)sqlite3_reset(statement_.get()); }

  int Type(int column) const { return sqlite3_column_type(statement_.get(), column); }  // SQLITE_NULL ...
  bool IsNull(int column) const { return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL; }
  std::int64_t Integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
  // Valid until the next step or reset.
  std::string_view Text(int column) const;
  // The same for bytes.
  std::span<const unsigned char> Blob(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { (void)sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

}  // namespace store
