#pragma once

#include <memory>
#include <string>

#include "Catalogue.h"
#include "Sqlite.h"

// A recording file, open for reading. The file is never changed:
//   closed      opened as it stands, without a lock
//   live        opened beside its writer, without ever folding its log in; to be let go of whenever
//               this program may wait, so that the writer is never held up
//   left over   (a crash left its log beside it) read through a private copy
//
// A file may be open once in this program.
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
  const Catalogue& Tables() const { return catalogue_; }
  Connection& Sql() { return connection_; }

 private:
  bool Connect(const std::string& name, int flags, std::string& error);
  bool ConnectToCopy(std::string& error);
  int Look();

  std::string path_;
  Kind kind_ = Kind::kClosed;
  bool cutShort_ = false;
  Catalogue catalogue_;
  Connection connection_;
};
