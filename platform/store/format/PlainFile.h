#pragma once

#include <sys/stat.h>

#include <string>
#include <utility>

namespace store {

// Owns a file descriptor and closes it.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { Reset(); }
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    Reset();
    fd_ = std::exchange(other.fd_, -1);
    return *this;
  }

  bool IsOpen() const { return fd_ >= 0; }
  int Get() const { return fd_; }
  void Reset();

 private:
  int fd_ = -1;
};

// Opens a regular file for reading: no link, FIFO, device or directory. Never blocks. Not open on failure;
// else `status` is the file's.
Descriptor OpenPlainFile(const std::string& path, struct stat& status);

// Reads up to `size` bytes and returns their number; fewer if the file ends or cannot be read.
std::size_t ReadFully(const Descriptor& file, std::uint64_t offset, unsigned char* data, std::size_t size);

// 0 or an errno value.
int SyncDirectory(const std::string& directory);

}  // namespace store
