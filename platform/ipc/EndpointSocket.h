#pragma once

#include <string>

#include "EndpointDirectory.h"
#include "os/Descriptor.h"
#include "os/Errno.h"

namespace ipc {

// The files of an endpoint in the endpoint directory: the listening socket NAME, and NAME.lock, which is
// locked while the endpoint is in use.
class EndpointSocket {
 public:
  EndpointSocket() = default;
  ~EndpointSocket();
  EndpointSocket(const EndpointSocket&) = delete;
  EndpointSocket& operator=(const EndpointSocket&) = delete;

  // Opens the endpoint `name`. EADDRINUSE: another process has it. After a failure the destructor closes
  // everything opened so far.
  os::Errno Open(const EndpointDirectory& directory, const std::string& name);

  int Fd() const { return listening_.Get(); }

  // Accepts one connection; returns a closed descriptor when none waits. Closes the connection when the
  // process has no descriptor left for it.
  os::Descriptor Accept();

  // Connects to the endpoint of that name.
  static os::Errno Connect(const EndpointDirectory& directory, const std::string& name,
                           os::Descriptor& connected);

 private:
  os::Errno Lock(const EndpointDirectory& directory, const std::string& name);

  os::Descriptor lock_;   // first: released last, after the socket is closed
  os::Descriptor spare_;  // closed for a moment to accept and close a connection
  os::Descriptor listening_;
  std::string path_;
};

}  // namespace ipc
