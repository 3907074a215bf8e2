#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "JournalFreeVfs.h"
#include "Statement.h"

namespace store {

// One connection to an existing database file. Neither uses nor creates a rollback journal. Does not wait for
// locks by default. Destroy all statements before it closes.
class Database {
 public:
  // For writing.
  SqliteCode Open(const std::string& path);
  // For reading a file that others may write. Changes neither the file nor its WAL.
  SqliteCode OpenToRead(const std::string& path);
  // For writing through an open descriptor, with other files attached under URIs.
  SqliteCode OpenForAttaching(int file);
  // For reading a file that may have been tampered with. Keeps its WAL unless the journal mode is changed.
  SqliteCode OpenHostile(const std::string& path);
  // The same, but ignores the WAL: changes nothing and opens no file beside it.
  SqliteCode OpenHostileAlone(const std::string& path);
  // With SQLite's own open flags; `name` can be a URI if they allow it.
  SqliteCode Open(const std::string& name, int flags) { return Open(name, flags, JournalFreeVfs()); }
  // Keeps the WAL at the close, even of the last connection.
  SqliteCode KeepWals();
  void Close() { handle_.reset(); }

  bool IsOpen() const { return handle_ != nullptr; }
  sqlite3* Handle() const { return handle_.get(); }

  // Interrupts every statement that takes much more work than reading a sound file does.
  void LimitWork();
  // Interrupts every statement once `over` returns true. `over` must outlive the connection.
  void EndWhen(const std::function<bool()>& over);

  SqliteCode Execute(const std::string& sql);
  // Reads the first column of the first row as text or number. kOk; kDone if there is no row; or an error.
  // `result` is unchanged unless kOk.
  SqliteCode Query(const std::string& sql, std::string& result);
  SqliteCode Query(const std::string& sql, std::int64_t& result);
  // The same number; `otherwise` if there is no row, it is NULL or cannot be read.
  std::int64_t Integer(const std::string& sql, std::int64_t otherwise);

  // The bytes of a database in memory, as its file would hold them; empty on failure.
  std::string Bytes() const;

  // The last error, and its message.
  SqliteCode ErrorCode() const { return SqliteCode{sqlite3_errcode(handle_.get())}; }
  std::string Error() const { return sqlite3_errmsg(handle_.get()); }

 private:
  SqliteCode Open(const std::string& name, int flags, const char* vfs);
  SqliteCode TrustNothing();

  struct CloseHandle {
    void operator()(sqlite3* handle) const { (void)sqlite3_close(handle); }
  };
  std::unique_ptr<sqlite3, CloseHandle> handle_;
};

}  // namespace store
