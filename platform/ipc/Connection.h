#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "ipc/IpcMessage.h"

// One duplex connection with a peer.
class Connection {
 public:
  enum class Origin { kAccepted, kConnected };
  enum class Input { kMessage, kNothing, kGarbage, kOversized, kClosed };

  // Takes the descriptor over. An accepted connection has no name until its hello. No two
  // connections of an endpoint have the same number.
  Connection(int fd, Origin origin, std::string name, std::uint64_t number);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  int fd() const { return fd_; }
  Origin origin() const { return origin_; }
  std::uint64_t number() const { return number_; }
  const std::string& name() const { return name_; }
  void SetName(std::string_view name) { name_ = name; }

  // The system's number of the process at the other end; 0 where it is not told.
  int PeerProcessId() const { return peerProcessId_; }

  // Whether new messages may be sent over it: it has a name and has not failed.
  bool Usable() const { return !name_.empty() && !sendFailed_; }
  // The peer is gone, whatever may be left to read.
  bool HungUp() const;
  // No message is sent over it any more; what is left to read is read.
  void StopSending() { sendFailed_ = true; }

  // Reads one packet into `message`, all but the sender. Never blocks.
  Input Read(IpcMessage& message);

  // Sends one message, behind what is queued, without blocking: 0, EAGAIN when the peer is full,
  // or what the system said.
  int Send(unsigned int type, const unsigned char* payload, std::size_t size);
  // The same, but gives a full peer up to `kMaxWaitMs`, once until it has taken something again.
  int SendPatiently(unsigned int type, const unsigned char* payload, std::size_t size);
  // The same, but queues what the peer does not take; EAGAIN when more than `maxQueuedBytes` would
  // wait then.
  int Post(unsigned int type, const unsigned char* payload, std::size_t size, std::size_t maxQueuedBytes);
  // Sends what is queued as far as the peer takes it.
  void Flush();
  bool HasQueued() const { return !queue_.empty(); }
  std::size_t QueuedBytes() const { return queuedBytes_; }

  // The events that the endpoint waits for on this connection, as it last told the system; kept
  // here for the endpoint.
  std::uint32_t watchedEvents = 0;
  // Of its turn, kept here for the endpoint: how many packets it may be read for, how often it was, and
  // how many turns for one packet it had since nothing was found behind one.
  int turnLimit = 0;
  int turnReads = 0;
  int loneTurns = 0;

 private:
  static constexpr int kMaxWaitMs = 10;

  struct Queued {
    unsigned int type;
    std::vector<unsigned char> payload;
    std::size_t Bytes() const { return payload.size() + sizeof(Queued) + 64; }
  };

  int SendNow(unsigned int type, const unsigned char* payload, std::size_t size);

  int fd_;
  const Origin origin_;
  std::string name_;
  const std::uint64_t number_;
  const int peerProcessId_;
  bool sendFailed_ = false;
  bool waitUsedUp_ = false;
  std::deque<Queued> queue_;
  std::size_t queuedBytes_ = 0;
};
