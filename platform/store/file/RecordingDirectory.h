#pragma once

#include <sys/stat.h>

#include <string>

namespace store {

// The directory of the recordings.
class RecordingDirectory {
 public:
  explicit RecordingDirectory(std::string path) : path_(std::move(path)) {}

  // One of this user that its group or others may write gets the sticky bit: they can still make files there,
  // but neither remove nor replace any of ours. Remembers what the directory is like.
  void Secure();

  // Makes it as it was remembered. False when that fails; its parent is not made.
  bool MakeAgain() const;

 private:
  std::string path_;
  struct stat status_ {};
};

}  // namespace store
