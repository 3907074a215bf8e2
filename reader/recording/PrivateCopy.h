#pragma once

#include <string>

namespace reader {

// A copy of a recording and of the WAL beside it, in a directory of its own under TMPDIR (/tmp), removed with
// the object. A rollback journal is never copied: SQLite would obey it.
class PrivateCopy {
 public:
  PrivateCopy() = default;
  ~PrivateCopy() { Remove(); }
  PrivateCopy(const PrivateCopy&) = delete;
  PrivateCopy& operator=(const PrivateCopy&) = delete;

  // False and why not. What is written to meanwhile is copied again.
  bool Make(const std::string& recording, std::string& error);
  const std::string& Path() const { return path_; }

  // A connection that has the copy open keeps it; nothing is left behind then, however this program ends.
  void Remove();

 private:
  std::string directory_;
  std::string path_;
};

}  // namespace reader
