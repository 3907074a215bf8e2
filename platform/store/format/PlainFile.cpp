#include "PlainFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace store {

void Descriptor::Reset() {
  if (fd_ >= 0) (void)close(fd_);
  fd_ = -1;
}

Descriptor OpenPlainFile(const std::string& path, struct stat& status) {
  // Checks before opening: opening a device can have side effects.
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.IsOpen() || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return file;
}

std::size_t ReadFully(const Descriptor& file, std::uint64_t offset, unsigned char* data, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = pread(file.Get(), data + done, size - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

int SyncDirectory(const std::string& directory) {
  const Descriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen()) return errno;
  return fsync(opened.Get()) == 0 || errno == EINVAL ? 0 : errno;
}

}  // namespace store
