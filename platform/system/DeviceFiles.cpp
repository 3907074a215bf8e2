#include "DeviceFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

std::string ReadSmallFile(const std::string& path, std::size_t maxSize) {
  // Non-blocking: the path may have been made to name a pipe.
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (fd < 0) return {};
  std::string content(maxSize, '\0');
  std::size_t size = 0;
  while (size < maxSize) {
    const ssize_t got = read(fd, content.data() + size, maxSize - size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    size += static_cast<std::size_t>(got);
  }
  close(fd);
  content.resize(size);
  return content;
}
