#include "RecordingDirectory.h"

#include <fcntl.h>
#include <unistd.h>

#include "PlainFile.h"

namespace store {
namespace {

constexpr mode_t kModeBits = 07777;

std::string ParentOf(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path.substr(0, path.rfind('/') + 1);
}

}  // namespace

void RecordingDirectory::Secure() {
  const Descriptor directory(open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.IsOpen() || fstat(directory.Get(), &status_) != 0) return;
  const bool othersWrite = (status_.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  if (status_.st_uid != geteuid() || !othersWrite || (status_.st_mode & S_ISVTX) != 0) return;
  status_.st_mode |= S_ISVTX;
  (void)fchmod(directory.Get(), status_.st_mode & kModeBits);  // optional
}

bool RecordingDirectory::MakeAgain() const {
  constexpr mode_t kPrivate = 0700;
  if (status_.st_nlink == 0 || mkdir(path_.c_str(), kPrivate) != 0) return false;
  // Only root can restore the owner. If the group cannot be restored either, it gets no permissions.
  if (chown(path_.c_str(), status_.st_uid, status_.st_gid) != 0 && status_.st_gid != getegid()) {
    (void)chmod(path_.c_str(), status_.st_mode & kModeBits & ~static_cast<mode_t>(S_IRWXG));
  } else {
    (void)chmod(path_.c_str(), status_.st_mode & kModeBits);
  }
  return SyncDirectory(ParentOf(path_)) == 0;
}

}  // namespace store
