#include "support/RawPeer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "support/IpcDir.h"

namespace {

sockaddr_un Address(const std::string& endpoint) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = IpcDir::File(endpoint);
  if (path.size() >= sizeof address.sun_path) std::abort();
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return address;
}

int NewSocket() {
  return socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

bool Readable(int fd, int timeoutMs) {
  pollfd state{fd, POLLIN, 0};
  return poll(&state, 1, timeoutMs) == 1;
}

}  // namespace

std::string U32(std::uint32_t value) {
  return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
          static_cast<char>(value)};
}

std::string Packet(std::uint32_t type, std::string_view payload) {
  return U32(type).append(payload);
}

std::string HelloPacket(std::string_view name) {
  return std::string("LINX\x01").append(name);
}

RawPeer RawPeer::To(const std::string& endpoint) {
  const sockaddr_un address = Address(endpoint);
  RawPeer peer(NewSocket());
  if (connect(peer.fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) peer.Close();
  return peer;
}

RawPeer RawPeer::To(const std::string& endpoint, std::string_view ownName) {
  RawPeer peer = To(endpoint);
  if (peer.Send(HelloPacket(ownName)) != 0) peer.Close();
  return peer;
}

RawPeer::RawPeer(RawPeer&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}

RawPeer& RawPeer::operator=(RawPeer&& other) noexcept {
  Close();
  fd_ = std::exchange(other.fd_, -1);
  return *this;
}

void RawPeer::Close() {
  if (fd_ >= 0) close(std::exchange(fd_, -1));
}

int RawPeer::Send(std::string_view packet) const {
  return send(fd_, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0 ? errno : 0;
}

std::optional<std::string> RawPeer::Receive(int timeoutMs) const {
  std::array<char, 8192> buffer;
  if (!Readable(fd_, timeoutMs)) return std::nullopt;
  ssize_t size = 0;
  do {  // the kernel reports a reset before the remaining packets
    size = recv(fd_, buffer.data(), buffer.size(), MSG_DONTWAIT);
  } while (size < 0 && (errno == ECONNRESET || errno == EINTR));
  if (size < 0) return std::nullopt;
  return std::string(buffer.data(), static_cast<std::size_t>(size));
}

RawListener::RawListener(const std::string& endpoint, int backlog)
    : path_(IpcDir::File(endpoint)), fd_(NewSocket()) {
  const sockaddr_un address = Address(endpoint);
  (void)unlink(path_.c_str());
  if (bind(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(fd_, backlog) != 0) {
    std::abort();
  }
}

RawListener::~RawListener() {
  close(fd_);
  (void)unlink(path_.c_str());
}

RawPeer RawListener::Accept(int timeoutMs) const {
  if (!Readable(fd_, timeoutMs)) return RawPeer();
  return RawPeer(accept4(fd_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}
