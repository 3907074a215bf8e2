#pragma once

#include <string>

// The files of an endpoint in the endpoint directory: the listening socket NAME, and NAME.lock,
// whose lock says that the endpoint is in use.
class EndpointSocket {
 public:
  EndpointSocket() = default;
  ~EndpointSocket();
  EndpointSocket(const EndpointSocket&) = delete;
  EndpointSocket& operator=(const EndpointSocket&) = delete;

  // Opens the endpoint `name`: 0 or an errno value, EADDRINUSE when another process has it. What
  // was opened before a failure is closed with the object.
  int Open(const std::string& name);

  bool IsOpen() const { return listenFd_ >= 0; }
  int fd() const { return listenFd_; }

  // Accepts one connection: its descriptor, or -1 when none waits. A connection that the process
  // has no descriptor left for is closed.
  int Accept();

  // Connects to the endpoint of that name: 0 and its descriptor, or an errno value.
  static int Connect(const std::string& name, int& fd);

 private:
  int Lock(const std::string& name);

  int lockFd_ = -1;
  int listenFd_ = -1;
  int spareFd_ = -1;  // given up for a moment to accept and close what there is no room for
  std::string path_;
};
