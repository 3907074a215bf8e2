#pragma once

#include <cstdint>
#include <string>

#include "Catalogue.h"
#include "PrivateCopy.h"
#include "Sqlite.h"

namespace reader {

// A recording file, open for reading. The file may be hostile and is never changed:
//   closed      read in place, without a lock; SQLite ignores the files beside it
//   live        read beside its writer, without checkpointing its WAL; close it before this program waits,
//               so that the writer is never held up
//   left over   (a crash left its WAL, or a journal lies beside it) read through a private copy
//
// A process may have a live file open only once.
class Recording {
 public:
  enum class Kind { kClosed, kLive, kLeftOver };

  // Returns false and sets `error` on failure.
  bool Open(const std::string& path, std::string& error);

  const std::string& Path() const { return path_; }
  std::string Name() const { return path_.substr(path_.rfind('/') + 1); }
  Kind HowItIs() const { return kind_; }
  // The file is shorter than its header says; the rest is read.
  bool CutShort() const { return cutShort_; }
  // The header says WAL mode but the WAL is missing: the latest records may be lost.
  bool MissesWal() const { return missesWal_; }
  const Catalogue& Tables() const { return catalogue_; }
  Connection& Sql() { return connection_; }
  // Column "last_seq" or "last_tick" of the last commit: from the newest seal, else from table progress, else
  // `otherwise`.
  std::int64_t Committed(const std::string& column, std::int64_t otherwise);

 private:
  bool Connect(const std::string& name, int flags, std::string& error);
  bool ConnectToCopy(std::string& error);
  void Prepare();
  SqliteCode Look();

  std::string path_;
  Kind kind_ = Kind::kClosed;
  bool cutShort_ = false;
  bool missesWal_ = false;
  Catalogue catalogue_;
  Connection connection_;
};

}  // namespace reader
