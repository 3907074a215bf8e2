#include "CopyFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

#include "Schema.h"
#include "Utf8.h"
#include "system/BigEndian.h"

namespace store {
namespace {

constexpr mode_t kMode = 0640;
constexpr off_t kWriteBackBytes = off_t{1} << 20;

// Also when it cannot be told. No name can be longer than the file system allows.
bool IsThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENAMETOOLONG);
}

std::string PartialOf(const std::string& destination) {
  constexpr std::string_view kSuffix = ".partial";
  const std::size_t name = destination.rfind('/') + 1;
  const std::string_view begin =
      CutText(std::string_view(destination).substr(name), NAME_MAX - kSuffix.size());
  return destination.substr(0, name).append(begin).append(kSuffix);
}

// A log that belongs to something else would be taken for the file's own.
bool IsFree(const std::string& path) {
  constexpr const char* kSuffixes[] = {"", "-wal", "-journal"};
  return std::none_of(std::begin(kSuffixes), std::end(kSuffixes),
                      [&path](const char* suffix) { return IsThere(path + suffix); });
}

// Takes away what a copy that was cut off has left: a file that says so in its header, or is empty.
// Anything else belongs to somebody.
void RemoveLeftover(const std::string& path) {
  constexpr off_t kIdOffset = 68;  // in the header of an SQLite file
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  const int fd = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return;
  unsigned char id[4];
  const bool unfinished = pread(fd, id, sizeof id, kIdOffset) == sizeof id && GetU32(id) == kUnfinishedCopyId;
  (void)close(fd);
  if (unfinished || status.st_size == 0) (void)unlink(path.c_str());
}

}  // namespace

CopyFile::~CopyFile() {
  if (fd_ < 0) return;
  (void)close(fd_);
  (void)unlink(partial_.c_str());
}

const char* CopyFile::Create(const std::string& destination, const FileNames& recordings) {
  if (!destination.starts_with('/')) return "the path is not absolute";
  if (destination.ends_with('/')) return "the path is that of a directory";
  if (!IsFree(destination)) return "something stands there";
  if (recordings.IsOneOf(destination)) return "the name is one of the recordings' own";
  if (destination.size() - destination.rfind('/') - 1 > NAME_MAX) return std::strerror(ENAMETOOLONG);
  destination_ = destination;
  partial_ = PartialOf(destination);
  RemoveLeftover(partial_);
  if (!IsFree(partial_)) return "something stands beside it as NAME.partial";
  fd_ = open(partial_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, kMode);
  return fd_ >= 0 ? nullptr : std::strerror(errno);
}

void CopyFile::WriteBack() {
  struct stat status {};
  if (fstat(fd_, &status) != 0 || status.st_size < writtenBack_ + kWriteBackBytes) return;
  writtenBack_ = status.st_size;
  // What fails is told by the sync at the end.
  (void)sync_file_range(fd_, 0, 0, SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE);
}

const char* CopyFile::Publish() {
  if (fsync(fd_) != 0 || !Link()) return std::strerror(errno);
  if (!SyncDirectory()) {
    const char* const reason = std::strerror(errno);
    (void)unlink(destination_.c_str());
    return reason;
  }
  (void)close(fd_);
  fd_ = -1;
  return nullptr;
}

bool CopyFile::Link() const {
  if (renameat2(AT_FDCWD, partial_.c_str(), AT_FDCWD, destination_.c_str(), RENAME_NOREPLACE) == 0)
    return true;
  if (errno != EINVAL && errno != ENOSYS) return false;  // these: the file system, or the kernel, cannot
  if (link(partial_.c_str(), destination_.c_str()) != 0) return false;
  (void)unlink(partial_.c_str());
  return true;
}

bool CopyFile::SyncDirectory() const {
  const std::string directory = destination_.substr(0, destination_.rfind('/') + 1);
  const int fd = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // A directory that may be written, but not read, cannot be synced.
  if (fd < 0) return errno == EACCES;
  const bool synced = fsync(fd) == 0 || errno == EINVAL;
  (void)close(fd);
  return synced;
}

}  // namespace store
