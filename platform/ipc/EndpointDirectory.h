#pragma once

#include <sys/types.h>

#include <string>

#include "os/Errno.h"

namespace ipc {

// The process at the other end of a connection, as the kernel recorded it when the connection was made.
struct PeerProcess {
  pid_t id = 0;  // 0: unknown
  uid_t user = static_cast<uid_t>(-1);

  // Returns the process that connected, or that listened.
  static PeerProcess Behind(int socketFd);
};

// The endpoint directory. Its owner and root are the system; other members of its group may connect and are
// observers. Only its owner and root can create endpoints in it.
class EndpointDirectory {
 public:
  // Finds the directory's path and creates a missing directory. Returns EPERM when its group or others may
  // write it, since any of them could then pose as a server.
  os::Errno Open();

  std::string PathOf(const std::string& name) const { return path_ + "/" + name; }
  uid_t Owner() const { return owner_; }
  bool IsSystem(const PeerProcess& peer) const;

 private:
  std::string path_;
  uid_t owner_ = 0;
};

}  // namespace ipc
