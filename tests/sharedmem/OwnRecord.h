#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "sharedmem/MetadataSharedMem.h"

// A record under its own name, read from outside like any other process does.
class OwnRecord : public testing::Test {
 protected:
  OwnRecord() { setenv("METADATA_SHM", name_.c_str(), 1); }
  ~OwnRecord() override {
    shm_unlink(name_.c_str());
    unsetenv("METADATA_SHM");
  }

  // Creates a record with `content`, as another process may have left it.
  void Leave(std::string_view content, mode_t mode = 0640) const {
    const int fd = shm_open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL, mode);
    ASSERT_EQ(write(fd, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    close(fd);
  }

  bool Exists() const {
    const int fd = shm_open(name_.c_str(), O_RDONLY, 0);
    if (fd >= 0) close(fd);
    return fd >= 0;
  }

  struct Seen {
    mode_t permissions;
    std::string content;
  };
  Seen Look() const {
    const int fd = shm_open(name_.c_str(), O_RDONLY, 0);
    struct stat status {};
    EXPECT_EQ(fstat(fd, &status), 0);
    std::string content(static_cast<std::size_t>(status.st_size), '?');
    EXPECT_EQ(read(fd, content.data(), content.size()), status.st_size);
    close(fd);
    return {status.st_mode & 07777, content};
  }

  const std::string name_ = "/metadata-test-" + std::to_string(getpid());
};
