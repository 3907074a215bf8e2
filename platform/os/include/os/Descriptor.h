#pragma once

#include <unistd.h>

#include <utility>

namespace os {

// An open file descriptor; the destructor closes it.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : fd_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }

  bool IsOpen() const { return fd_ >= 0; }
  int Get() const { return fd_; }

  void Reset(int fd) {
    Close();
    fd_ = fd;
  }
  void Close() {
    if (fd_ >= 0) (void)close(std::exchange(fd_, -1));
  }
  // Returns the descriptor without closing it; the caller owns it.
  int Release() { return std::exchange(fd_, -1); }

 private:
  int fd_ = -1;
};

}  // namespace os
