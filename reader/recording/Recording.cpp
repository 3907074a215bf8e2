#include "Recording.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "PrivateCopy.h"
#include "Schema.h"

namespace {

constexpr int kBusyTimeoutMs = 2000;

bool Exists(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

// Every connection to a file in log mode holds a lock on this byte of the log's index for as long as it
// is open. Closing the index here gives up this process's own locks on it, so a file is open once.
bool HasWriter(const std::string& path) {
  constexpr off_t kAliveByte = 128;
  const int fd = open((path + "-shm").c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kAliveByte;
  lock.l_len = 1;
  const bool held = fcntl(fd, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
  (void)close(fd);
  return held;
}

// A path as SQLite takes it in a URI.
std::string Uri(const std::string& path, const char* parameters) {
  std::string uri = "file:";
  for (const char c : path) {
    switch (c) {
      case '%':
        uri += "%25";
        break;
      case '?':
        uri += "%3f";
        break;
      case '#':
        uri += "%23";
        break;
      default:
        uri += c;
    }
  }
  return uri + parameters;
}

std::string WhyNot(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return std::strerror(errno);
  (void)close(fd);
  return {};
}

}  // namespace

bool Recording::Open(const std::string& path, std::string& error) {
  path_ = path;
  error = WhyNot(path);
  if (!error.empty()) return false;
  if (!Exists(path + "-wal") && !Exists(path + "-journal")) {
    kind_ = Kind::kClosed;
    return Connect(Uri(path, "?mode=ro&immutable=1"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, error);
  }
  if (HasWriter(path)) {
    kind_ = Kind::kLive;
    if (Connect(Uri(path, "?mode=ro"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, error)) return true;
  }
  kind_ = Kind::kLeftOver;
  return ConnectToCopy(error);
}

bool Recording::ConnectToCopy(std::string& error) {
  PrivateCopy copy;
  return copy.Make(path_, error) && Connect(copy.Path(), SQLITE_OPEN_READWRITE, error);
}

bool Recording::Connect(const std::string& name, int flags, std::string& error) {
  catalogue_ = {};
  cutShort_ = false;
  int rc = connection_.Open(name, flags);
  if (rc == SQLITE_OK) {
    (void)sqlite3_busy_timeout(connection_.Handle(), kBusyTimeoutMs);
    (void)connection_.Execute("PRAGMA trusted_schema=OFF");
    // A copy that is removed while it is read must not have the index of its log in a file.
    if (kind_ == Kind::kLeftOver) (void)connection_.Execute("PRAGMA locking_mode=EXCLUSIVE");
    rc = Look();
  }
  if (rc == SQLITE_CORRUPT) {
    // SQLite refuses a file that is shorter than its header says, unless it is told to repair.
    (void)connection_.Execute("PRAGMA writable_schema=ON");
    rc = Look();
    cutShort_ = rc == SQLITE_OK;
  }
  if (rc == SQLITE_OK) {
    if (connection_.Integer("PRAGMA application_id", 0) != store::kApplicationId) {
      error = "not a recording";
    } else if (!ReadCatalogue(connection_, catalogue_)) {
      error = "its tables cannot be read: " + connection_.Error();
    } else {
      return true;
    }
  } else {
    error = connection_.IsOpen() ? connection_.Error() : sqlite3_errstr(rc);
  }
  connection_.Close();
  return false;
}

int Recording::Look() {
  Statement look;
  const int rc = look.Prepare(connection_.Handle(), "SELECT count(*) FROM sqlite_master");
  if (rc != SQLITE_OK) return rc;
  const int step = look.Step();
  return step == SQLITE_ROW ? SQLITE_OK : step;
}
