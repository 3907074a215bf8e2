#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Peers of the IPC layer made of bare sockets, for what no well-behaved endpoint does and for what
// the wire carries. Byte strings throughout.

// A packet: type and payload.
std::string Packet(std::uint32_t type, std::string_view payload = {});
// The packet that a connection begins with.
std::string HelloPacket(std::string_view name);
// 32 bits, big-endian.
std::string U32(std::uint32_t value);

// One side of a connection. Movable, closes at the end.
class RawPeer {
 public:
  explicit RawPeer(int fd = -1) : fd_(fd) {}
  // Connects to an endpoint; check Connected.
  static RawPeer To(const std::string& endpoint);
  // The same, and says the hello.
  static RawPeer To(const std::string& endpoint, std::string_view ownName);
  ~RawPeer() { Close(); }
  RawPeer(RawPeer&& other) noexcept;
  RawPeer& operator=(RawPeer&& other) noexcept;

  bool Connected() const { return fd_ >= 0; }
  int fd() const { return fd_; }
  void Close();

  // 0 or an errno value; never waits.
  int Send(std::string_view packet) const;
  // The next packet; empty when the other side closed; nothing when none came within the time.
  std::optional<std::string> Receive(int timeoutMs = 20000) const;
  // Whether the other side has closed, nothing left to read.
  bool Closed(int timeoutMs = 0) const { return Receive(timeoutMs) == std::string(); }

 private:
  int fd_;
};

// An endpoint's listening socket.
class RawListener {
 public:
  // Replaces what is there.
  explicit RawListener(const std::string& endpoint, int backlog = 16);
  ~RawListener();
  RawListener(const RawListener&) = delete;
  RawListener& operator=(const RawListener&) = delete;

  // The next connection; not Connected when none came within the time.
  RawPeer Accept(int timeoutMs = 20000) const;

 private:
  std::string path_;
  int fd_;
};
