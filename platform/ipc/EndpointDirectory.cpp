#include "EndpointDirectory.h"

#include <sys/socket.h>
#include <sys/stat.h>

#include "IpcLog.h"
#include "system/KvGetenv.h"

namespace ipc {

namespace {

constexpr mode_t kMode = 02750;
constexpr uid_t kOverflowUser = 65534;  // the kernel reports it for users outside this user namespace

// Sets the mode again, because mkdir ignores set-group-ID and applies the umask.
os::Errno Make(const std::string& path) {
  if (mkdir(path.c_str(), kMode & 0777) == 0) return chmod(path.c_str(), kMode) == 0 ? 0 : errno;
  return errno == EEXIST ? 0 : errno;
}

}  // namespace

PeerProcess PeerProcess::Behind(int socketFd) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(socketFd, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return {};
  return {peer.pid, peer.uid};
}

os::Errno EndpointDirectory::Open() {
  const char* path = KvGetenvText("LINX_IPC_DIR");
  path_ = path != nullptr ? path : "/run/linx";
  if (const os::Errno error = Make(path_); error.Failed()) return error;
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) return os::Errno::Last();
  if (!S_ISDIR(status.st_mode)) return ENOTDIR;
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    kIpcLog(kLogError, "Refused endpoint directory ", path_, ": group or others may write it");
    return EPERM;
  }
  owner_ = status.st_uid;
  return 0;
}

bool EndpointDirectory::IsSystem(const PeerProcess& peer) const {
  if (peer.id == 0 || peer.user == kOverflowUser) return false;
  return peer.user == 0 || peer.user == owner_;
}

}  // namespace ipc
