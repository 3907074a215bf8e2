#include "Senders.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "Measure.h"

namespace {

double Seconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace

void SendPacket(int fd, const std::string& packet) {
  if (send(fd, packet.data(), packet.size(), 0) != static_cast<ssize_t>(packet.size())) Fail("send");
}

int ConnectTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (void)path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) Fail("connect");
  return fd;
}

Senders::Senders(const std::string& path) {
  for (int i = 0; i < kSenders; ++i) {
    fds_.push_back(ConnectTo(path));
    SendPacket(fds_.back(), "LINX\x01Sender" + std::to_string(i));
  }
}

Senders::~Senders() {
  for (const int fd : fds_) close(fd);
}

void Senders::Flood(const std::vector<std::string>& packets, int events) const {
  std::vector<pid_t> children;
  for (int sender = 0; sender < kSenders; ++sender) {
    children.push_back(fork());
    if (children.back() != 0) continue;
    for (int i = sender; i < events; i += kSenders) {
      SendPacket(fds_[static_cast<std::size_t>(sender)],
                 packets[static_cast<std::size_t>(i) % packets.size()]);
    }
    _exit(0);
  }
  for (const pid_t child : children) (void)waitpid(child, nullptr, 0);
}

// Polls the clock, because sleeping is not exact enough.
void Senders::Pace(const std::vector<std::string>& packets, int events, double gapSeconds) const {
  double next = Seconds();
  for (int i = 0; i < events; ++i) {
    while (Seconds() < next) continue;
    SendPacket(fds_[static_cast<std::size_t>(i % kSenders)],
               packets[static_cast<std::size_t>(i) % packets.size()]);
    next = std::max(next, Seconds()) + gapSeconds;
  }
}
