#pragma once

#include <string>
#include <vector>

constexpr int kSenders = 10;

// ConnectTo connects to the endpoint at `path` without a hello; SendPacket sends one packet and waits for
// room. Both exit on failure.
int ConnectTo(const std::string& path);
void SendPacket(int fd, const std::string& packet);

// Ten connections to the endpoint at `path`; each has sent its hello.
class Senders {
 public:
  explicit Senders(const std::string& path);
  ~Senders();
  Senders(const Senders&) = delete;
  Senders& operator=(const Senders&) = delete;

  // Both send `events` events and use these packets in turn. Flood: each sender is a process that sends as
  // fast as the receiver reads. Pace: the senders take turns, with a gap between events; a late event delays
  // the next ones, so that two events never come together.
  void Flood(const std::vector<std::string>& packets, int events) const;
  void Pace(const std::vector<std::string>& packets, int events, double gapSeconds) const;

 private:
  std::vector<int> fds_;
};
