#include "EndpointSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "system/KvGetenv.h"

namespace {

constexpr mode_t kDirectoryMode = 02750;
constexpr mode_t kFileMode = 0660;
constexpr int kBacklog = 64;

std::string PathOf(const std::string& name) {
  const char* directory = KvGetenvText("LINX_IPC_DIR");
  return std::string(directory != nullptr ? directory : "/run/linx") + "/" + name;
}

int FillAddress(const std::string& path, sockaddr_un& address) {
  address = {};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return ENAMETOOLONG;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return 0;
}

int NewSocket() {
  return socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

int SpareDescriptor() {
  return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

// The mode is set again because mkdir knows no set-group-ID and obeys the umask.
int MakeDirectoryOf(const std::string& path) {
  const std::string directory = path.substr(0, path.rfind('/'));
  if (mkdir(directory.c_str(), kDirectoryMode & 0777) == 0) {
    return chmod(directory.c_str(), kDirectoryMode) == 0 ? 0 : errno;
  }
  return errno == EEXIST ? 0 : errno;
}

}  // namespace

EndpointSocket::~EndpointSocket() {
  if (listenFd_ >= 0) {
    (void)unlink(path_.c_str());
    close(listenFd_);
  }
  if (spareFd_ >= 0) close(spareFd_);
  if (lockFd_ >= 0) close(lockFd_);  // last: the name is free only when all else is gone
}

int EndpointSocket::Lock(const std::string& name) {
  const int fd = open(PathOf(name + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode);
  if (fd < 0) return errno;
  if (flock(fd, LOCK_EX | LOCK_NB) == 0) {
    lockFd_ = fd;
    return 0;
  }
  const int error = errno == EWOULDBLOCK ? EADDRINUSE : errno;
  close(fd);
  return error;
}

int EndpointSocket::Open(const std::string& name) {
  path_ = PathOf(name);
  sockaddr_un address;
  if (const int error = FillAddress(path_, address)) return error;
  if (const int error = MakeDirectoryOf(path_)) return error;
  if (const int error = Lock(name)) return error;
  spareFd_ = SpareDescriptor();

  if (unlink(path_.c_str()) != 0 && errno != ENOENT) return errno;  // a killed holder left it behind
  const int fd = NewSocket();
  if (fd < 0) return errno;
  if (bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      chmod(path_.c_str(), kFileMode) != 0 || listen(fd, kBacklog) != 0) {
    const int error = errno;
    close(fd);
    return error;
  }
  listenFd_ = fd;
  return 0;
}

int EndpointSocket::Accept() {
  if (spareFd_ < 0) spareFd_ = SpareDescriptor();
  int fd = accept4(listenFd_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (fd >= 0 || (errno != EMFILE && errno != ENFILE) || spareFd_ < 0) return fd;
  close(spareFd_);
  fd = accept4(listenFd_, nullptr, nullptr, SOCK_CLOEXEC);
  if (fd >= 0) close(fd);
  spareFd_ = SpareDescriptor();
  return -1;
}

int EndpointSocket::Connect(const std::string& name, int& fd) {
  sockaddr_un address;
  if (const int error = FillAddress(PathOf(name), address)) return error;
  const int connecting = NewSocket();
  if (connecting < 0) return errno;
  if (connect(connecting, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    const int error = errno;  // EAGAIN: its backlog is full
    close(connecting);
    return error;
  }
  fd = connecting;
  return 0;
}
