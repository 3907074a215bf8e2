#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// A bound datagram socket, which plays a system log or a service manager. A name that begins with "@" is
// abstract.
class ListeningSocket {
 public:
  explicit ListeningSocket(const std::string& name)
      : path_(name[0] == '@' ? "" : name), fd_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.size() > sizeof address.sun_path) std::abort();
    std::memcpy(address.sun_path, name.data(), name.size());
    if (name[0] == '@') address.sun_path[0] = '\0';
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    if (bind(fd_, reinterpret_cast<const sockaddr*>(&address), size) != 0) std::abort();
  }
  ~ListeningSocket() {
    close(fd_);
    if (!path_.empty()) unlink(path_.c_str());
  }
  ListeningSocket(const ListeningSocket&) = delete;
  ListeningSocket& operator=(const ListeningSocket&) = delete;

  // The datagrams since the last call.
  std::vector<std::string> Heard() const {
    std::vector<std::string> heard;
    char buffer[2048];
    ssize_t size = 0;
    while ((size = recv(fd_, buffer, sizeof buffer, MSG_DONTWAIT)) >= 0) {
      heard.emplace_back(buffer, static_cast<std::size_t>(size));
    }
    return heard;
  }

 private:
  std::string path_;
  int fd_;
};
