#pragma once

#include <string>
#include <vector>

constexpr int kSenders = 10;

// A connection to the endpoint at `path`, without a hello; and one packet over it, waiting
// for room. A failure ends the program.
int ConnectTo(const std::string& path);
void SendPacket(int fd, const std::string& packet);

// Ten connections to the endpoint at `path`, each after its hello.
class Senders {
 public:
  explicit Senders(const std::string& path);
  ~Senders();
  Senders(const Senders&) = delete;
  Senders& operator=(const Senders&) = delete;

  // Sends so many events, these packets in turn. In the flood each sender is a process that sends as fast
  // as it is read. Paced they come one by one, from one sender after the other; one that is late delays
  // those behind it, so that two never come together.
  void Flood(const std::vector<std::string>& packets, int events) const;
  void Pace(const std::vector<std::string>& packets, int events, double gapSeconds) const;

 private:
  std::vector<int> fds_;
};
