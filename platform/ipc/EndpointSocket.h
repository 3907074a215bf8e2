#pragma once

#include <string>

#include "EndpointDirectory.h"
#include "os/Descriptor.h"
#include "os/Errno.h"

namespace ipc {

// The files of an endpoint in the endpoint directory: the listening socket NAME, and NAME.lock,
// whose lock says that the endpoint is in use.
class EndpointSocket {
 public:
  EndpointSocket() = default;
  ~EndpointSocket();
  EndpointSocket(const EndpointSocket&) = delete;
  EndpointSocket& operator=(const EndpointSocket&) = delete;

  // Opens the endpoint `name`. EADDRINUSE: another process has it. What was opened before a failure
  // is closed with the object.
  os::Errno Open(const EndpointDirectory& directory, const std::string& name);

  int Fd() const { return listening_.Get(); }

  // Accepts one connection; nothing open when none waits. A connection for which the process has no
  // descriptor left is closed.
  os::Descriptor Accept();

  // Connects to the endpoint of that name.
  static os::Errno Connect(const EndpointDirectory& directory, const std::string& name,
                           os::Descriptor& connected);

 private:
  os::Errno Lock(const EndpointDirectory& directory, const std::string& name);

  os::Descriptor lock_;   // first: the name is free only when all else is gone
  os::Descriptor spare_;  // given up for a moment to accept and close a connection
  os::Descriptor listening_;
  std::string path_;
};

}  // namespace ipc
