#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string_view>

enum class FileOp { kOpen, kRead, kWrite, kSync, kTruncate, kDelete };

// What SQLite asks of the file system.
struct FileEvent {
  FileOp op;
  std::string_view path;
  std::int64_t offset = 0;  // of a write; a truncation's new size
  std::string_view data = {};
  bool directory = false;  // a sync or deletion that syncs the directory, too
};

// What happens instead of an operation: nothing unless `code` is an error. Of a write the first
// `written` bytes are written then.
struct Verdict {
  int code = SQLITE_OK;
  std::size_t written = 0;
};

// Sees every operation before, and after it has worked those that change what a medium holds.
class FileWatch {
 public:
  virtual ~FileWatch() = default;
  virtual Verdict Before(const FileEvent& /*event*/) { return {}; }
  virtual void After(const FileEvent& /*event*/) {}
};

// While it lives, a SQLite file system layer stands before the system's own and shows `watch` what
// is done to files that are opened from now on. They must be closed before it goes.
class WatchedVfs {
 public:
  explicit WatchedVfs(FileWatch& watch);
  ~WatchedVfs();
  WatchedVfs(const WatchedVfs&) = delete;
  WatchedVfs& operator=(const WatchedVfs&) = delete;
};

// The layer below, for those who want to be unwatched.
inline constexpr const char* kPlainVfs = "unix";
