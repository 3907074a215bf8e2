#pragma once

#include <string>

namespace reader {

// A copy of a recording and its WAL, in its own directory under TMPDIR (default /tmp). The destructor removes
// it. Never copies a rollback journal: SQLite would apply it.
class PrivateCopy {
 public:
  PrivateCopy() = default;
  ~PrivateCopy() { Remove(); }
  PrivateCopy(const PrivateCopy&) = delete;
  PrivateCopy& operator=(const PrivateCopy&) = delete;

  // Returns false and sets `error` on failure. Copies again if the recording changes meanwhile.
  bool Make(const std::string& recording, std::string& error);
  const std::string& Path() const { return path_; }

  // Deletes the copy. An open connection can still read it, and no file remains however this program ends.
  void Remove();

 private:
  std::string directory_;
  std::string path_;
};

}  // namespace reader
