#pragma once

#include <sys/types.h>

#include <string>

#include "os/Errno.h"

namespace ipc {

// The process at the other end of a connection, as the kernel knew it when the connection was made.
struct PeerProcess {
  pid_t id = 0;  // 0: not known
  uid_t user = static_cast<uid_t>(-1);

  // Of the process that connected, or that listened.
  static PeerProcess Behind(int socketFd);
};

// The endpoint directory. It says who is who: its owner and root are the system; everybody else who can
// connect, so the members of its group, is an observer. Only its owner and root can make endpoints in it.
class EndpointDirectory {
 public:
  // Takes the directory in force, and makes it where it is missing. EPERM: its group or others could write
  // it, so that anybody could be a server.
  os::Errno Open();

  std::string PathOf(const std::string& name) const { return path_ + "/" + name; }
  uid_t Owner() const { return owner_; }
  bool IsSystem(const PeerProcess& peer) const;

 private:
  std::string path_;
  uid_t owner_ = 0;
};

}  // namespace ipc
