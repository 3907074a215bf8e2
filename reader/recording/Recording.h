#pragma once

#include <cstdint>
#include <string>

#include "Catalogue.h"
#include "PrivateCopy.h"
#include "Sqlite.h"

namespace reader {

// A recording file, open for reading. The file is hostile and is never changed:
//   closed      opened as it stands, without a lock; SQLite sees nothing that lies beside it
//   live        opened beside its writer, without ever folding its WAL in; to be let go of whenever this
//               program may wait, so that the writer is never held up
//   left over   (a crash left its WAL beside it, or something else lies there) read through a private copy
//
// A live file may be open once in this program.
class Recording {
 public:
  enum class Kind { kClosed, kLive, kLeftOver };

  // False and why not.
  bool Open(const std::string& path, std::string& error);

  const std::string& Path() const { return path_; }
  std::string Name() const { return path_.substr(path_.rfind('/') + 1); }
  Kind HowItIs() const { return kind_; }
  // The file is shorter than it says; what is left of it is read.
  bool CutShort() const { return cutShort_; }
  // Its header says that there is a WAL beside it, but there is none: what was recorded last may be gone.
  bool MissesWal() const { return missesWal_; }
  const Catalogue& Tables() const { return catalogue_; }
  Connection& Sql() { return connection_; }
  // "last_seq" or "last_tick" of the last record committed: by the newest seal, else by table progress.
  std::int64_t Committed(const std::string& column, std::int64_t otherwise);

 private:
  bool Connect(const std::string& name, int flags, std::string& error);
  bool ConnectToCopy(std::string& error);
  void Prepare();
  int Look();

  std::string path_;
  Kind kind_ = Kind::kClosed;
  bool cutShort_ = false;
  bool missesWal_ = false;
  Catalogue catalogue_;
  Connection connection_;
};

}  // namespace reader
