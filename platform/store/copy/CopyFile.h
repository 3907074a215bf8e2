#pragma once

#include <sys/types.h>

#include <string>

#include "FileNames.h"
#include "NewFile.h"

namespace store {

// A new file that shows under its name only when it is complete, belongs to the recordings' owner and group
// and has mode 0640. Until then it has no name, and is written through its descriptor only; where the file
// system has no such files it stands beside it as "NAME.partial": what a power cut or the like has left there
// goes, nothing else does.
class CopyFile {
 public:
  // Null, or the reason why not, valid until errno is told again: `destination` is no absolute path,
  // something stands there, no file can be made there, the name is one of the recordings' own, or others
  // could put another file in its place: its directory must be this user's or root's, and only they may write
  // there, or it has the sticky bit. The owner and group are those of the file at `ownedLike`. A file system
  // that keeps no owners decides itself; that is logged.
  const char* Create(const std::string& destination, const FileNames& recordings,
                     const std::string& ownedLike);

  int Get() const { return file_.Get(); }

  // Lets the medium write what has come since the last call, and waits for what came before that, so
  // that the end has not much to wait for. To be called often; does nothing for less than 1 MB.
  void WriteBack();

  // Null when the file is durable under its name, or the reason why not; nothing that has come there
  // meanwhile is replaced.
  const char* Publish();

 private:
  const char* SetOwner(const std::string& destination, const std::string& ownedLike) const;

  Descriptor directory_;  // outlives the file in it
  NewFile file_;
  off_t writtenBack_ = 0;
};

}  // namespace store
