#include "OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

// By their first bytes: a database, the two kinds of log beside one.
constexpr std::array<std::string_view, 3> kDatabases{
    "SQLite format 3", {"\x37\x7f\x06\x82", 4}, {"\x37\x7f\x06\x83", 4}};

bool IsDatabase(int fd) {
  std::array<char, 16> bytes{};
  const ssize_t count = pread(fd, bytes.data(), bytes.size(), 0);
  const std::string_view begin(bytes.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
  return std::any_of(kDatabases.begin(), kDatabases.end(),
                     [begin](std::string_view database) { return begin.starts_with(database); });
}

}  // namespace

bool OutputFile::Open(const std::string& name, Messages& messages) {
  messages_ = &messages;
  name_ = name;
  if (name.empty() || name == "-") {
    out_ = std::make_unique<Output>();
    return true;
  }
  const int old = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  const bool isDatabase = old >= 0 && IsDatabase(old);
  if (old >= 0) (void)close(old);
  if (isDatabase) {
    messages.Problem(name + ": is a database, which is not written over");
    return false;
  }
  fd_ = open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd_ < 0) {
    messages.Problem(name + ": " + std::strerror(errno));
    return false;
  }
  out_ = std::make_unique<Output>(fd_);
  return true;
}

bool OutputFile::Finish() {
  const bool written = out_->Flush();
  const bool closed = fd_ < 0 || close(fd_) == 0;
  fd_ = -1;
  if ((!written || !closed) && !name_.empty()) messages_->Problem(name_ + ": " + std::strerror(errno));
  return written && closed;
}

OutputFile::~OutputFile() {
  if (fd_ >= 0) (void)close(fd_);
}
