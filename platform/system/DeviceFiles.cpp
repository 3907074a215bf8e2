#include "DeviceFiles.h"

#include <fcntl.h>

#include <cerrno>

#include "os/Descriptor.h"

std::string ReadSmallFile(const std::string& path, std::size_t maxSize) {
  // Non-blocking: the path may name a pipe.
  const os::Descriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!fd.IsOpen()) return {};
  std::string content(maxSize, '\0');
  std::size_t size = 0;
  while (size < maxSize) {
    const ssize_t got = read(fd.Get(), content.data() + size, maxSize - size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    size += static_cast<std::size_t>(got);
  }
  content.resize(size);
  return content;
}
