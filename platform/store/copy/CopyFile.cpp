#include "CopyFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <iterator>
#include <string_view>

#include "Schema.h"
#include "Utf8.h"
#include "log/LogLine.h"
#include "system/BigEndian.h"

namespace store {
namespace {

constexpr LogSource log{"MetadataReader"};

constexpr mode_t kMode = 0640;
constexpr mode_t kModeBits = 07777;
constexpr off_t kWriteBackBytes = off_t{1} << 20;

// True also if that cannot be determined. A name that is too long for the file system cannot exist.
bool IsThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENAMETOOLONG);
}

// SQLite would take a WAL that is already there for the copy's own.
bool IsFree(const std::string& path) {
  constexpr const char* kSuffixes[] = {"", "-wal", "-journal"};
  return std::none_of(std::begin(kSuffixes), std::end(kSuffixes),
                      [&path](const char* suffix) { return IsThere(path + suffix); });
}

// Removes the rest of an interrupted copy: a file whose header says so, or an empty one. Removes no other
// file.
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

std::string PartialOf(const std::string& name) {
  constexpr std::string_view kSuffix = ".partial";
  return std::string(CutText(name, NAME_MAX - kSuffix.size())).append(kSuffix);
}

// Whether the file system stores no owners, as on most USB sticks.
bool KeepsNoOwners(int fd) {
  constexpr unsigned long kTypes[] = {0x4D44, 0x2011BAB0, 0x5346544E, 0x7366746E};  // FAT, exFAT, NTFS, ntfs3
  struct statfs status {};
  return fstatfs(fd, &status) == 0 &&
         std::find(std::begin(kTypes), std::end(kTypes), static_cast<unsigned long>(status.f_type)) !=
             std::end(kTypes);
}

// Whether others cannot replace or remove a file in the directory.
bool IsSafe(int directory) {
  struct stat status {};
  if (fstat(directory, &status) != 0) return false;
  const bool othersWrite = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  const bool trusted = status.st_uid == 0 || status.st_uid == geteuid();
  return (trusted && (!othersWrite || (status.st_mode & S_ISVTX) != 0)) || KeepsNoOwners(directory);
}

}  // namespace

const char* CopyFile::Create(const std::string& destination, const FileNames& recordings,
                             const std::string& ownedLike) {
  if (!destination.starts_with('/')) return "the path is not absolute";
  if (destination.ends_with('/')) return "the path is that of a directory";
  if (!IsFree(destination)) return "something stands there";
  if (recordings.IsOneOf(destination)) return "the name is one of the recordings' own";
  const std::string name = NameOf(destination);
  if (name.size() > NAME_MAX) return std::strerror(ENAMETOOLONG);
  const std::string parent = destination.substr(0, destination.size() - name.size());
  directory_ = Descriptor(open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory_.IsOpen()) return std::strerror(errno);
  if (!IsSafe(directory_.Get())) return "others can write in its directory";
  const std::string partial = PartialOf(name);
  int error = file_.Create(directory_.Get(), name, partial);
  if (error == EEXIST) {
    RemoveLeftover(parent + partial);
    error = file_.Create(directory_.Get(), name, partial);
  }
  return error == 0 ? SetOwner(destination, ownedLike) : std::strerror(error);
}

const char* CopyFile::SetOwner(const std::string& destination, const std::string& ownedLike) const {
  struct stat wanted {};
  struct stat status {};
  if (stat(ownedLike.c_str(), &wanted) != 0) return std::strerror(errno);
  const bool given =
      fchown(file_.Get(), wanted.st_uid, wanted.st_gid) == 0 && fchmod(file_.Get(), kMode) == 0;
  if (fstat(file_.Get(), &status) != 0) return std::strerror(errno);
  if (given && status.st_uid == wanted.st_uid && status.st_gid == wanted.st_gid &&
      (status.st_mode & kModeBits) == kMode) {
    return nullptr;
  }
  if (!KeepsNoOwners(file_.Get())) return "it cannot be given the recordings' owner and group";
  log(kLogError, "The medium keeps no owners, its mount decides who can read ", destination);
  return nullptr;
}

const char* CopyFile::Publish() {
  const int error = file_.Publish();
  return error == 0 ? nullptr : std::strerror(error);
}

void CopyFile::WriteBack() {
  struct stat status {};
  if (fstat(file_.Get(), &status) != 0 || status.st_size < writtenBack_ + kWriteBackBytes) return;
  writtenBack_ = status.st_size;
  // The sync at the end reports errors.
  (void)sync_file_range(file_.Get(), 0, 0, SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE);
}

}  // namespace store
