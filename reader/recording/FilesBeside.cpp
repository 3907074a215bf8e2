#include "FilesBeside.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>

namespace reader {
namespace {

// Owns a descriptor; -1 if opening failed.
class Opened {
 public:
  // O_NONBLOCK: opening a FIFO or a device does not wait for its other end.
  explicit Opened(const std::string& path)
      : fd_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)), error_(fd_ < 0 ? errno : 0) {
    if (fd_ >= 0 && fstat(fd_, &status_) != 0) error_ = errno;
  }
  ~Opened() {
    if (fd_ >= 0) (void)close(fd_);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

  int Fd() const { return fd_; }
  int Error() const { return error_; }
  bool IsFile() const { return error_ == 0 && S_ISREG(status_.st_mode); }
  off_t Bytes() const { return status_.st_size; }

 private:
  int fd_;
  int error_;
  struct stat status_ {};
};

// Sets `isThere`. Returns false if the path is not a regular file. Does not open it.
bool LookAt(const std::string& path, bool& isThere, std::string& error) {
  struct stat status {};
  isThere = stat(path.c_str(), &status) == 0;
  if (!isThere || S_ISREG(status.st_mode)) return true;
  error = path + " is not a regular file";
  return false;
}

// Bytes 18 and 19 of the header are the write and read version; 2 means WAL.
bool IsInWalMode(int fd) {
  constexpr char kWal = 2;
  std::array<char, 2> versions{};
  return pread(fd, versions.data(), versions.size(), 18) == 2 && versions[0] == kWal && versions[1] == kWal;
}

// Every open connection in WAL mode holds a lock on this byte of the WAL index. Closing the index here drops
// all locks that this process holds on it, so this process may have a live file open only once.
bool HasWriter(const std::string& path) {
  constexpr off_t kAliveByte = 128;
  constexpr off_t kLeastBytes = 32'768;  // SQLite maps the first region as a whole
  const Opened index(path + "-shm");
  if (!index.IsFile() || index.Bytes() < kLeastBytes) return false;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kAliveByte;
  lock.l_len = 1;
  return fcntl(index.Fd(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace

bool LookBeside(const std::string& path, FilesBeside& files, std::string& error) {
  files = {};
  {
    const Opened file(path);
    if (!file.IsFile()) {
      error = file.Error() != 0 ? std::strerror(file.Error()) : "is not a regular file";
      return false;
    }
    files.isInWalMode = IsInWalMode(file.Fd());
  }
  bool index = false;
  if (!LookAt(path + "-wal", files.wal, error) || !LookAt(path + "-shm", index, error)) return false;
  struct stat ignored {};
  files.journal = lstat((path + "-journal").c_str(), &ignored) == 0;
  files.hasWriter = files.wal && index && HasWriter(path);
  return true;
}

void EndInOrderWhereAMappedFileIsCutShort() {
  struct sigaction action {};
  action.sa_handler = [](int) {
    constexpr std::string_view kWhy =
        "metadata: the index of a WAL (a file NAME.db-shm) was cut short while it was read\n";
    if (write(STDERR_FILENO, kWhy.data(), kWhy.size()) < 0) _exit(2);
    _exit(1);
  };
  (void)sigaction(SIGBUS, &action, nullptr);
}

}  // namespace reader
