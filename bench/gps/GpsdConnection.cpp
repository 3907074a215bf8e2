#include "GpsdConnection.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>

namespace bench {

namespace {

constexpr std::size_t kMaxLine = 65536;
constexpr std::string_view kWatch = "?WATCH={\"enable\":true,\"json\":true};\n";

using Addresses = std::unique_ptr<addrinfo, void (*)(addrinfo*)>;

Addresses AddressesOf(const std::string& host, const std::string& port, int flags, int& error) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = flags;
  addrinfo* found = nullptr;
  error = getaddrinfo(host.c_str(), port.c_str(), &hints, &found);
  return {found, [](addrinfo* all) {
            if (all != nullptr) freeaddrinfo(all);
          }};
}

// Detects within half a minute that the host is gone.
void KeepAlive(int fd) {
  const auto set = [fd](int level, int option, int value) {
    (void)setsockopt(fd, level, option, &value, sizeof value);
  };
  set(SOL_SOCKET, SO_KEEPALIVE, 1);
  set(IPPROTO_TCP, TCP_KEEPIDLE, 10);
  set(IPPROTO_TCP, TCP_KEEPINTVL, 5);
  set(IPPROTO_TCP, TCP_KEEPCNT, 3);
}

}  // namespace

GpsdConnection::GpsdConnection(const std::string& peer) : peer_(SplitWords(peer)) {}

GpsdConnection::~GpsdConnection() {
  if (fd_ >= 0) close(fd_);
}

GpsdConnection::Input GpsdConnection::Read(std::string& line) {
  if (fd_ < 0 && Clock::now() >= nextAttempt_) Connect();
  if (fd_ < 0 || (!connected_ && !FinishConnect())) return Input::kNothing;
  for (;;) {
    if (TakeLine(line)) return Input::kLine;
    if (const Input input = Fill(); input != Input::kLine) return input;
  }
}

void GpsdConnection::Connect() {
  constexpr std::chrono::seconds kPause{1};
  nextAttempt_ = Clock::now() + kPause;
  if (peer_.size() < 2) return;
  const std::string& address = peer_[1 + attempts_++ % (peer_.size() - 1)];
  int error = 0;
  const Addresses found = AddressesOf(address, peer_[0], AI_NUMERICHOST | AI_NUMERICSERV, error);
  if (found == nullptr) return;
  fd_ = socket(found->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (fd_ < 0) return;
  KeepAlive(fd_);
  if (connect(fd_, found->ai_addr, found->ai_addrlen) != 0 && errno != EINPROGRESS) (void)Lose();
}

bool GpsdConnection::FinishConnect() {
  pollfd writable{fd_, POLLOUT, 0};
  if (poll(&writable, 1, 0) <= 0) return false;
  int error = 0;
  socklen_t size = sizeof error;
  (void)getsockopt(fd_, SOL_SOCKET, SO_ERROR, &error, &size);
  connected_ = error == 0 && send(fd_, kWatch.data(), kWatch.size(), MSG_NOSIGNAL) == ssize_t{kWatch.size()};
  if (!connected_) (void)Lose();
  return connected_;
}

bool GpsdConnection::TakeLine(std::string& line) {
  for (;;) {
    const std::size_t end = received_.find('\n');
    if (end == std::string::npos) break;
    const bool whole = !skipping_;
    skipping_ = false;
    if (whole) line.assign(received_, 0, end);
    received_.erase(0, end + 1);
    if (whole) return true;
  }
  if (received_.size() > kMaxLine) skipping_ = true;
  if (skipping_) received_.clear();
  return false;
}

// Returns kLine when bytes were received.
GpsdConnection::Input GpsdConnection::Fill() {
  std::array<char, 4096> block;
  const ssize_t size = recv(fd_, block.data(), block.size(), 0);
  if (size > 0) {
    received_.append(block.data(), static_cast<std::size_t>(size));
    return Input::kLine;
  }
  if (size < 0 && (errno == EAGAIN || errno == EINTR)) return Input::kNothing;
  return Lose();
}

GpsdConnection::Input GpsdConnection::Lose() {
  failures_ = connected_ ? 0 : failures_ + 1;
  close(fd_);
  fd_ = -1;
  received_.clear();
  skipping_ = false;
  const bool stood = connected_;
  connected_ = false;
  return stood ? Input::kGone : Input::kNothing;
}

std::string GpsdConnection::Address() const {
  if (peer_.size() < 2) return "nowhere";
  const std::string& address = peer_[1 + (attempts_ == 0 ? 0 : attempts_ - 1) % (peer_.size() - 1)];
  const bool ipv6 = address.find(':') != std::string::npos;
  return (ipv6 ? "[" + address + "]" : address) + ":" + peer_[0];
}

bool ResolveGpsd(const std::string& text, std::string& peer, std::string& error) {
  const std::size_t colon = text.rfind(':');
  const std::string port = colon == std::string::npos ? "" : text.substr(colon + 1);
  std::string host = text.substr(0, colon);
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  std::uint32_t number = 0;
  if (host.empty() || !ReadNumber(port, number) || number == 0 || number > 65535) {
    error = Quoted(text) + " is not HOST:PORT";
    return false;
  }
  int code = 0;
  const Addresses found = AddressesOf(host, port, AI_NUMERICSERV, code);
  if (code != 0) {
    error = "no address of " + Quoted(host) + ": " + gai_strerror(code);
    return false;
  }
  peer = port;
  for (const addrinfo* address = found.get(); address != nullptr; address = address->ai_next) {
    std::array<char, NI_MAXHOST> name;
    if (getnameinfo(address->ai_addr, address->ai_addrlen, name.data(), name.size(), nullptr, 0,
                    NI_NUMERICHOST) == 0) {
      peer.append(" ").append(name.data());
    }
  }
  return true;
}

}  // namespace bench
