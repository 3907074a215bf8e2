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

// One duplex connection with a peer.
class Connection {
 public:
  enum class Origin { kAccepted, kConnected };
  enum class Input { kMessage, kNothing, kGarbage, kOversized, kClosed };

  // Who is at the other end. Decided once, when the connection is made.
  struct Peer {
    PeerProcess process;
    bool isSystem = false;  // else an observer
  };

  // An accepted connection has no name until its hello. No two connections of an endpoint have the same
  // number.
  Connection(os::Descriptor fd, Origin origin, Peer peer, std::string name, std::uint64_t number);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  int fd() const { return fd_.Get(); }
  Origin origin() const { return origin_; }
  std::uint64_t number() const { return number_; }
  const std::string& name() const { return name_; }
  void SetName(std::string_view name) { name_ = name; }

  const Peer& peer() const { return peer_; }

  // Whether its peer is the process that listens under its name.
  bool ToServer() const { return origin_ == Origin::kConnected || toServer_; }
  void SetToServer() { toServer_ = true; }

  // Whether new messages may be sent over it: it has a name and has not failed.
  bool Usable() const { return !name_.empty() && !sendFailed_; }
  // The peer is gone, whatever may be left to read.
  bool HungUp() const;
  // No message is sent over it any more; what is left to read is read.
  void StopSending() { sendFailed_ = true; }

  // Reads one packet into `message`, all but the sender. Never blocks.
  Input Read(IpcMessage& message);

  // Sends one message, behind what is queued, without blocking: EAGAIN when the peer is full,
  // or what the system said.
  os::Errno Send(unsigned int type, const unsigned char* payload, std::size_t size);
  // The same, but gives a full peer up to `kMaxWaitMs`, once until it has taken something again.
  os::Errno SendPatiently(unsigned int type, const unsigned char* payload, std::size_t size);
  // The same, but queues what the peer does not take; EAGAIN when more than `maxQueuedBytes` would
  // wait then.
  os::Errno Post(unsigned int type, const unsigned char* payload, std::size_t size,
                 std::size_t maxQueuedBytes);
  // Sends what is queued as far as the peer takes it.
  void Flush();
  bool HasQueued() const { return !queue_.empty(); }
  std::size_t QueuedBytes() const { return queuedBytes_; }

  // Kept here for the table of connections.
  std::uint32_t watchedEvents = 0;  // the events that the kernel was last asked to report
  int turnLimit = 0;                // reads that this turn may have
  int turnReads = 0;                // reads that it had
  int loneTurns = 0;                // turns of one read in a row

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
