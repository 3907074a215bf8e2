#pragma once

#include <sys/types.h>

#include <string>

#include "FileNames.h"
#include "NewFile.h"

namespace store {

// A new file, mode 0640, with the recordings' owner and group. It gets its name only when it is complete. On
// a file system without unnamed files it is "NAME.partial" until then. A "NAME.partial" that an interrupted
// copy left is removed; no other file is.
class CopyFile {
 public:
  // Creates the file with owner and group of the file at `ownedLike`. Null on success, else the reason, valid
  // until the next strerror call. Fails if
  //   - `destination` is no absolute path, exists, or has a recording's name;
  //   - no file can be created there;
  //   - others could replace the file: the directory must be this user's or root's, and either only they may
  //     write there or it has the sticky bit.
  // On a file system without owners the mount decides who owns the file; that is logged.
  const char* Create(const std::string& destination, const FileNames& recordings,
                     const std::string& ownedLike);

  int Get() const { return file_.Get(); }

  // Starts writing new data to the medium and waits for the data of earlier calls, so that the final sync is
  // short. Call it often; it does nothing for less than 1 MB.
  void WriteBack();

  // Null once the file is durable under its name, else the reason. Never replaces an existing file.
  const char* Publish();

 private:
  const char* SetOwner(const std::string& destination, const std::string& ownedLike) const;

  Descriptor directory_;  // outlives the file in it
  NewFile file_;
  off_t writtenBack_ = 0;
};

}  // namespace store
