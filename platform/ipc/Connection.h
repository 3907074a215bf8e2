#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "EndpointDirectory.h"
#include "ipc/IpcMessage.h"
#include "os/Descriptor.h"
#include "os/Errno.h"

namespace ipc {

// A duplex connection with one peer.
class Connection {
 public:
  enum class Origin { kAccepted, kConnected };
  enum class Input { kMessage, kNothing, kGarbage, kOversized, kClosed };

  // The process at the other end, determined when the connection is made.
  struct Peer {
    PeerProcess process;
    bool isSystem = false;  // else an observer
  };

  // An accepted connection has no name until its hello. Each connection of an endpoint has its own number.
  Connection(os::Descriptor fd, Origin origin, Peer peer, std::string name, std::uint64_t number);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  int fd() const { return fd_.Get(); }
  Origin origin() const { return origin_; }
  std::uint64_t number() const { return number_; }
  const std::string& name() const { return name_; }
  void SetName(std::string_view name) { name_ = name; }

  const Peer& peer() const { return peer_; }

  // Whether the peer is the process that listens under the connection's name.
  bool ToServer() const { return origin_ == Origin::kConnected || toServer_; }
  void SetToServer() { toServer_ = true; }

  // Whether the connection accepts new messages: it has a name and no send has failed.
  bool Usable() const { return !name_.empty() && !sendFailed_; }
  // Whether the peer closed the connection; unread packets may remain.
  bool HungUp() const;
  // Stops sending; reading goes on.
  void StopSending() { sendFailed_ = true; }

  // Reads one packet into `message`, without setting the sender. Never blocks.
  Input Read(IpcMessage& message);

  // Sends one message after the queued ones, without blocking. Returns EAGAIN when the peer's socket is full,
  // or the system's error.
  os::Errno Send(unsigned int type, const unsigned char* payload, std::size_t size);
  // Like Send, but waits up to `kMaxWaitMs` for a full peer. Waits again only after a send succeeded.
  os::Errno SendPatiently(unsigned int type, const unsigned char* payload, std::size_t size);
  // Like Send, but queues the message when the peer is full. Returns EAGAIN when the queue would exceed
  // `maxQueuedBytes`.
  os::Errno Post(unsigned int type, const unsigned char* payload, std::size_t size,
                 std::size_t maxQueuedBytes);
  // Sends queued messages until the peer is full.
  void Flush();
  bool HasQueued() const { return !queue_.empty(); }
  std::size_t QueuedBytes() const { return queuedBytes_; }

  // State of the ConnectionTable.
  std::uint32_t watchedEvents = 0;  // events registered with epoll
  int turnLimit = 0;                // reads allowed in this turn
  int turnReads = 0;                // reads done in this turn
  int loneTurns = 0;                // consecutive turns limited to one read

 private:
  static constexpr int kMaxWaitMs = 10;

  struct Queued {
    unsigned int type;
    std::vector<unsigned char> payload;
    std::size_t Bytes() const { return payload.size() + sizeof(Queued) + 64; }
  };

  os::Errno SendNow(unsigned int type, const unsigned char* payload, std::size_t size);

  const os::Descriptor fd_;
  const Origin origin_;
  const Peer peer_;
  std::string name_;
  const std::uint64_t number_;
  bool toServer_ = false;
  bool sendFailed_ = false;
  bool waitUsedUp_ = false;
  std::deque<Queued> queue_;
  std::size_t queuedBytes_ = 0;
};

}  // namespace ipc
