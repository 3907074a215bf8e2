#pragma once

#include <sys/stat.h>

#include <string>

namespace store {

// The directory of the recordings.
class RecordingDirectory {
 public:
  explicit RecordingDirectory(std::string path) : path_(std::move(path)) {}

  // Sets the sticky bit if the directory is this user's and its group or others may write: they can still add
  // files, but cannot remove or replace ours. Remembers mode, owner and group.
  void Secure();

  // Recreates the directory as remembered, but not its parent. False on failure.
  bool MakeAgain() const;

 private:
  std::string path_;
  struct stat status_ {};
};

}  // namespace store
