#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

// Listens on a port of this machine; 0: any free port.
class Listener {
 public:
  explicit Listener(in_port_t port = 0)
      : fd_(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
    const int on = 1;
    (void)setsockopt(fd_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    address_.sin_family = AF_INET;
    address_.sin_port = htons(port);
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address_;
    EXPECT_EQ(bind(fd_, reinterpret_cast<sockaddr*>(&address_), size), 0);
    EXPECT_EQ(listen(fd_, 1), 0);
    (void)getsockname(fd_, reinterpret_cast<sockaddr*>(&address_), &size);
  }
  ~Listener() { close(fd_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  in_port_t Port() const { return ntohs(address_.sin_port); }
  // Returns a descriptor; -1 when nobody has connected.
  int Accept() const { return accept4(fd_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC); }

 private:
  int fd_;
  sockaddr_in address_{};
};
