#include "EndpointSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include "os/SocketAddress.h"

namespace ipc {

namespace {

constexpr mode_t kSocketMode = 0660;
constexpr mode_t kLockMode = 0600;
constexpr int kBacklog = 64;

os::Descriptor NewSocket() {
  return os::Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

os::Descriptor SpareDescriptor() {
  return os::Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

// Any user who can open the lock file can hold the lock and prevent a start. So only the directory's owner
// may open it, even when root created it.
os::Errno KeepToOwner(int fd, uid_t owner) {
  struct stat status {};
  if (fstat(fd, &status) != 0) return os::Errno::Last();
  if (!S_ISREG(status.st_mode)) return EINVAL;
  if (status.st_uid != owner && fchown(fd, owner, static_cast<gid_t>(-1)) != 0) return os::Errno::Last();
  if ((status.st_mode & 07777) != kLockMode && fchmod(fd, kLockMode) != 0) return os::Errno::Last();
  return 0;
}

}  // namespace

EndpointSocket::~EndpointSocket() {
  if (listening_.IsOpen()) (void)unlink(path_.c_str());
}

os::Errno EndpointSocket::Lock(const EndpointDirectory& directory, const std::string& name) {
  constexpr int kFlags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  os::Descriptor file(open(directory.PathOf(name + ".lock").c_str(), kFlags, kLockMode));
  if (!file.IsOpen()) return os::Errno::Last();
  if (const os::Errno error = KeepToOwner(file.Get(), directory.Owner()); error.Failed()) return error;
  if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return errno == EWOULDBLOCK ? EADDRINUSE : errno;
  lock_ = std::move(file);
  return 0;
}

os::Errno EndpointSocket::Open(const EndpointDirectory& directory, const std::string& name) {
  path_ = directory.PathOf(name);
  const auto address = os::SocketAddress::OfPath(path_);
  if (!address) return ENAMETOOLONG;
  if (const os::Errno error = Lock(directory, name); error.Failed()) return error;
  spare_ = SpareDescriptor();

  if (unlink(path_.c_str()) != 0 && errno != ENOENT) return os::Errno::Last();  // left by a killed process
  os::Descriptor fd = NewSocket();
  if (!fd.IsOpen() || bind(fd.Get(), address->Get(), address->Size()) != 0 ||
      chmod(path_.c_str(), kSocketMode) != 0 || listen(fd.Get(), kBacklog) != 0) {
    return os::Errno::Last();
  }
  listening_ = std::move(fd);
  return 0;
}

os::Descriptor EndpointSocket::Accept() {
  if (!spare_.IsOpen()) spare_ = SpareDescriptor();
  os::Descriptor accepted(accept4(Fd(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (accepted.IsOpen() || (errno != EMFILE && errno != ENFILE) || !spare_.IsOpen()) return accepted;
  spare_.Close();
  os::Descriptor(accept4(Fd(), nullptr, nullptr, SOCK_CLOEXEC)).Close();
  spare_ = SpareDescriptor();
  return {};
}

os::Errno EndpointSocket::Connect(const EndpointDirectory& directory, const std::string& name,
                                  os::Descriptor& connected) {
  const auto address = os::SocketAddress::OfPath(directory.PathOf(name));
  if (!address) return ENAMETOOLONG;
  os::Descriptor fd = NewSocket();
  if (!fd.IsOpen()) return os::Errno::Last();
  if (connect(fd.Get(), address->Get(), address->Size()) != 0)
    return os::Errno::Last();  // EAGAIN: backlog full
  connected = std::move(fd);
  return 0;
}

}  // namespace ipc
