#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

namespace os {

// The address of a Unix socket.
class SocketAddress {
 public:
  // Nothing when the path is empty or too long.
  static std::optional<SocketAddress> OfPath(std::string_view path) {
    if (path.empty() || path.size() >= sizeof sockaddr_un{}.sun_path) return {};
    return SocketAddress(path, 1);
  }
  // An absolute path, or "@" and an abstract name. Nothing when the name is neither, or too long.
  static std::optional<SocketAddress> OfName(std::string_view name) {
    if (name.size() < 2) return {};
    if (name[0] == '/') return OfPath(name);
    if (name[0] != '@' || name.size() > sizeof sockaddr_un{}.sun_path) return {};
    SocketAddress address(name, 0);
    address.address_.sun_path[0] = '\0';
    return address;
  }

  const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&address_); }
  socklen_t Size() const { return size_; }

 private:
  SocketAddress(std::string_view name, std::size_t terminator)
      : size_(static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + terminator)) {
    address_.sun_family = AF_UNIX;
    std::memcpy(address_.sun_path, name.data(), name.size());
  }

  sockaddr_un address_{};
  socklen_t size_;
};

}  // namespace os
