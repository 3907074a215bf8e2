#include "NewFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace store {
namespace {

constexpr mode_t kPrivate = 0600;

}  // namespace

NewFile::~NewFile() {
  if (file_.IsOpen() && !published_ && !partial_.empty()) (void)unlinkat(directory_, partial_.c_str(), 0);
}

int NewFile::Create(int directory, const std::string& name, const std::string& partial) {
  directory_ = directory;
  name_ = name;
  file_ = Descriptor(openat(directory, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, kPrivate));
  if (file_.IsOpen()) return 0;
  if (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT && errno != EINVAL) return errno;
  partial_ = partial;
  constexpr int kFlags = O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW | O_CLOEXEC;
  file_ = Descriptor(openat(directory, partial_.c_str(), kFlags, kPrivate));
  return file_.IsOpen() ? 0 : errno;
}

int NewFile::Publish() {
  if (fsync(file_.Get()) != 0) return errno;
  if (const int error = Link(); error != 0) return error;
  published_ = true;
  if (fsync(directory_) == 0 || errno == EINVAL || errno == EBADF) return 0;
  const int error = errno;
  (void)unlinkat(directory_, name_.c_str(), 0);
  return error;
}

int NewFile::Link() const {
  if (partial_.empty()) {
    const std::string path = "/proc/self/fd/" + std::to_string(file_.Get());
    return linkat(AT_FDCWD, path.c_str(), directory_, name_.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
  }
  if (renameat2(directory_, partial_.c_str(), directory_, name_.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;  // the file system or kernel lacks the call
  if (linkat(directory_, partial_.c_str(), directory_, name_.c_str(), 0) != 0) return errno;
  (void)unlinkat(directory_, partial_.c_str(), 0);
  return 0;
}

}  // namespace store
