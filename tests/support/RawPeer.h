#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Peers of the IPC layer made of raw sockets, for hostile behaviour and for tests of the wire format. All
// packets are byte strings.

// A packet: type and payload.
std::string Packet(std::uint32_t type, std::string_view payload = {});
// The first packet of a connection.
std::string HelloPacket(std::string_view name);
// 32 bits, big-endian.
std::string U32(std::uint32_t value);

// One side of a connection. Movable. The destructor closes it.
class RawPeer {
 public:
  explicit RawPeer(int fd = -1) : fd_(fd) {}
  // Connects to an endpoint; check Connected.
  static RawPeer To(const std::string& endpoint);
  // Connects and sends the hello.
  static RawPeer To(const std::string& endpoint, std::string_view ownName);
  ~RawPeer() { Close(); }
  RawPeer(RawPeer&& other) noexcept;
  RawPeer& operator=(RawPeer&& other) noexcept;

  bool Connected() const { return fd_ >= 0; }
  int fd() const { return fd_; }
  void Close();

  // Returns 0 or an errno value. Never waits.
  int Send(std::string_view packet) const;
  // Returns the next packet, "" when the other side has closed, or nullopt when the time is over.
  std::optional<std::string> Receive(int timeoutMs = 20000) const;
  // Whether the other side has closed and no packet is left.
  bool Closed(int timeoutMs = 0) const { return Receive(timeoutMs) == std::string(); }

 private:
  int fd_;
};

// An endpoint's listening socket.
class RawListener {
 public:
  // Replaces an existing file.
  explicit RawListener(const std::string& endpoint, int backlog = 16);
  ~RawListener();
  RawListener(const RawListener&) = delete;
  RawListener& operator=(const RawListener&) = delete;

  // Returns the next connection. It is not Connected when the time is over.
  RawPeer Accept(int timeoutMs = 20000) const;

 private:
  std::string path_;
  int fd_;
};
