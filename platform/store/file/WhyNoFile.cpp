#include "WhyNoFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>

#include "FileNames.h"

namespace store {
namespace {

constexpr std::size_t kMaxPath = 512 - sizeof "-journal";  // SQLite's limit
constexpr std::size_t kBytes = 80UL * 1024;                // enough for an empty recording

int TryToFill(int fd) {
  static constexpr std::array<char, 4096> kBlock{};
  for (std::size_t done = 0; done < kBytes;) {
    const ssize_t put = write(fd, kBlock.data(), kBlock.size());
    if (put <= 0) return put < 0 ? errno : ENOSPC;
    done += static_cast<std::size_t>(put);
  }
  return 0;
}

}  // namespace

const char* WhyNoFile(const std::string& path) {
  const std::size_t name = path.rfind('/') + 1;
  if (path.size() > kMaxPath || path.size() - name > NAME_MAX) return std::strerror(ENAMETOOLONG);
  const std::string directory = name == 0 ? "." : path.substr(0, name);
  const int fd = open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (fd < 0) return std::strerror(errno);
  const int error = TryToFill(fd);
  (void)close(fd);
  return error != 0 ? std::strerror(error) : "SQLite cannot make a database there";
}

}  // namespace store
