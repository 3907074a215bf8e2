#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

namespace reader {
namespace {

// The first bytes of an SQLite database and of the two kinds of WAL.
constexpr std::array<std::string_view, 3> kDatabases{
    "SQLite format 3", {"\x37\x7f\x06\x82", 4}, {"\x37\x7f\x06\x83", 4}};

bool IsDatabase(int fd) {
  std::array<char, 16> bytes{};
  const ssize_t count = pread(fd, bytes.data(), bytes.size(), 0);
  const std::string_view begin(bytes.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
  return std::any_of(kDatabases.begin(), kDatabases.end(),
                     [begin](std::string_view database) { return begin.starts_with(database); });
}

// The permissions of the replaced file; a new file gets those that the umask allows.
mode_t ModeFor(const struct stat* old) {
  const mode_t mask = umask(0);
  (void)umask(mask);
  return old != nullptr ? old->st_mode & 0777U : 0666U & ~mask;
}

}  // namespace

bool OutputFile::Open(const std::string& name, Messages& messages) {
  messages_ = &messages;
  name_ = name;
  if (name.empty() || name == "-") {
    out_ = std::make_unique<Output>();
    return true;
  }
  struct stat status {};
  const bool isThere = stat(name.c_str(), &status) == 0;
  const bool isFile = isThere && S_ISREG(status.st_mode);
  if (isThere && !isFile) {
    fd_ = open(name.c_str(), O_WRONLY | O_CLOEXEC);
  } else {
    const int old = isFile ? open(name.c_str(), O_RDONLY | O_CLOEXEC) : -1;
    const bool isDatabase = old >= 0 && IsDatabase(old);
    if (old >= 0) (void)close(old);
    if (isDatabase) {
      messages.Problem(name + ": is a database, which is not written over");
      return false;
    }
    if (!OpenBeside()) return false;
    (void)fchmod(fd_, ModeFor(isFile ? &status : nullptr));
  }
  if (fd_ < 0) return Fail(errno);
  out_ = std::make_unique<Output>(fd_, Output::Kind::kData);
  return true;
}

bool OutputFile::OpenBeside() {
  std::error_code failure;
  const std::filesystem::path place = std::filesystem::weakly_canonical(name_, failure);
  place_ = failure ? name_ : place.string();
  std::string beside = place_ + ".XXXXXX";
  fd_ = mkostemp(beside.data(), O_CLOEXEC);
  if (fd_ < 0) return Fail(errno);
  beside_ = beside;
  return true;
}

bool OutputFile::Fail(int error) {
  if (!name_.empty()) messages_->Problem(name_ + ": " + std::strerror(error));
  return false;
}

bool OutputFile::Finish() {
  if (!out_->Flush()) return Fail(out_->Error());
  if (fd_ < 0) return true;
  const int fd = std::exchange(fd_, -1);
  if (close(fd) != 0) return Fail(errno);
  if (beside_.empty()) return true;
  if (rename(beside_.c_str(), place_.c_str()) != 0) return Fail(errno);
  beside_.clear();
  return true;
}

OutputFile::~OutputFile() {
  if (fd_ >= 0) (void)close(fd_);
  if (!beside_.empty()) (void)unlink(beside_.c_str());
}

}  // namespace reader
