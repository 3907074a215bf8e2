#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "JournalFreeVfs.h"
#include "Statement.h"

namespace store {

// One connection to a database file that is there already. Follows and makes no rollback journal. Waits for
// no lock unless told to. Statements must be gone before it closes.
class Database {
 public:
  // For writing.
  SqliteCode Open(const std::string& path);
  // For reading a file that others may be writing: neither it nor its WAL is changed.
  SqliteCode OpenToRead(const std::string& path);
  // For writing through an open descriptor, with other files attached under URIs.
  SqliteCode OpenForAttaching(int file);
  // For reading a file that somebody may have tampered with. Its WAL stays as it is unless the journal mode
  // is changed.
  SqliteCode OpenHostile(const std::string& path);
  // The same without a look at its WAL: nothing can be changed, and nothing beside the file is opened.
  SqliteCode OpenHostileAlone(const std::string& path);
  // With SQLite's own flags for opening; `name` is a URI where they say so.
  SqliteCode Open(const std::string& name, int flags) { return Open(name, flags, JournalFreeVfs()); }
  // Lets the close fold no WAL in, though this connection be the last.
  SqliteCode KeepWals();
  void Close() { handle_.reset(); }

  bool IsOpen() const { return handle_ != nullptr; }
  sqlite3* Handle() const { return handle_.get(); }

  // Ends every statement that takes much more work than those that read a sound file.
  void LimitWork();
  // Ends every statement once the function says so; it must live as long as the connection.
  void EndWhen(const std::function<bool()>& over);

  SqliteCode Execute(const std::string& sql);
  // The first column of the first row as text or number: kOk; kDone when there is no row; or an error.
  // The result is unchanged unless kOk.
  SqliteCode Query(const std::string& sql, std::string& result);
  SqliteCode Query(const std::string& sql, std::int64_t& result);
  // The same number; `otherwise` where there is none, it is NULL or cannot be read.
  std::int64_t Integer(const std::string& sql, std::int64_t otherwise);

  // Of a database in memory: what its file would hold; empty on failure.
  std::string Bytes() const;

  // What went wrong last.
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
