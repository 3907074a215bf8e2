#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string_view>

enum class FileOp { kOpen, kRead, kWrite, kSync, kTruncate, kDelete };

// A request of SQLite to the file system.
struct FileEvent {
  FileOp op;
  std::string_view path;
  std::int64_t offset = 0;  // offset of a write, or new size of a truncation
  std::string_view data = {};
  bool directory = false;  // a sync or deletion that also syncs the directory
};

// The operation proceeds unless `code` is an error. A failed write still writes its first `written` bytes.
struct Verdict {
  int code = SQLITE_OK;
  std::size_t written = 0;
};

// Before is called for every operation, After for every successful change of the medium.
class FileWatch {
 public:
  virtual ~FileWatch() = default;
  virtual Verdict Before(const FileEvent& /*event*/) { return {}; }
  virtual void After(const FileEvent& /*event*/) {}
};

// While this object lives, a SQLite file system layer shows `watch` all operations on files opened from now
// on. These files must be closed before the object is destroyed.
class WatchedVfs {
 public:
  explicit WatchedVfs(FileWatch& watch);
  ~WatchedVfs();
  WatchedVfs(const WatchedVfs&) = delete;
  WatchedVfs& operator=(const WatchedVfs&) = delete;
};

// The layer below, for unwatched connections.
inline constexpr const char* kPlainVfs = "unix";
