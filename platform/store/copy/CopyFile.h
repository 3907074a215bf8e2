#pragma once

#include <sys/types.h>

#include <string>

#include "FileNames.h"

namespace store {

// A new file that gets its name only when it is complete. Until then it stands beside it as "NAME.partial",
// of a long name its beginning and ".partial"; what a power cut has left under that name is removed, nothing
// else is. A file that is not published is removed at the end.
class CopyFile {
 public:
  CopyFile() = default;
  ~CopyFile();
  CopyFile(const CopyFile&) = delete;
  CopyFile& operator=(const CopyFile&) = delete;

  // Null, or the reason why not: `destination` is no absolute path, something stands there or beside it as
  // "NAME.partial", no file can be made there, or the name is one of the recordings' own. Valid until errno
  // is told again.
  const char* Create(const std::string& destination, const FileNames& recordings);

  const std::string& PartialPath() const { return partial_; }

  // Lets the medium write what has come since the last call, and waits for what came before that, so
  // that the end has not much to wait for. To be called often; does nothing for less than 1 MB.
  void WriteBack();

  // Null when the file is durable under its name, or the reason why not; nothing that has come there
  // meanwhile is replaced.
  const char* Publish();

 private:
  bool Link() const;
  bool SyncDirectory() const;

  std::string destination_;
  std::string partial_;
  int fd_ = -1;
  off_t writtenBack_ = 0;
};

}  // namespace store
