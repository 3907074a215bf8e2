#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Connection.h"
#include "os/Descriptor.h"
#include "os/Errno.h"

namespace ipc {

// The connections of an endpoint, and the wait for their input.
//
// Uses level-triggered epoll. A wait collects the ready connections. Each then gets a turn of at most kTurn
// packets and kTurnMs. Most packets come alone, and a read that finds nothing costs as much as receiving a
// packet. So a turn is one packet, until a connection had kLoneTurns such turns in a row.
class ConnectionTable {
 public:
  static constexpr std::size_t kMaxConnections = 128;
  static constexpr std::size_t kFairShare = 16;  // connections that one process keeps when the table is full
  static constexpr int kTurn = 16;
  static constexpr int kTurnMs = 10;
  static constexpr int kLoneTurns = 8;

  // The other input that a wait found.
  struct WakeUp {
    bool accept = false;
    bool signal = false;
  };

  ConnectionTable() = default;
  ConnectionTable(const ConnectionTable&) = delete;
  ConnectionTable& operator=(const ConnectionTable&) = delete;

  os::Errno Open();
  bool IsOpen() const { return epoll_.IsOpen(); }
  os::Errno WatchListening(int fd);
  // Includes `fd` in every wait until the descriptor is closed.
  void WatchSignals(int fd);

  bool Full() const { return connections_.size() >= kMaxConnections; }
  // Returns the connection to close in favour of a new one, or null. Takes the first of:
  // - the oldest whose peer is gone
  // - the oldest without a name, else the oldest, of the process with the most connections, if these are more
  //   than kFairShare
  // - the oldest without a name
  // - for a system process, the oldest of an observer
  Connection* FirstToGo(bool forSystem) const;

  // Adds a connection; the table must not be full.
  Connection* Add(os::Descriptor fd, Connection::Origin origin, Connection::Peer peer,
                  const std::string& name);
  void Remove(Connection* connection);

  // Returns the connection for sending to a peer, or null.
  Connection* Find(const std::string& name) const;
  // Returns all connections of that name, including those that no longer send.
  std::vector<Connection*> Named(const std::string& name) const;

  // Returns the connection to read, or null when every turn is over. Returns the same connection until Done
  // is called or its turn is over. Done says that the connection has no more packets.
  Connection* NextReady();
  void Done();

  // Waits at most `timeoutMs` and collects the ready connections. With 0 each gets a full turn: a caller that
  // does not wait gets everything already queued.
  WakeUp Wait(int timeoutMs);

  // Stops reading from a connection, so that its full socket slows the peer down.
  void Pause(Connection& connection);
  // Resumes all paused connections that `mayRead` accepts.
  template <typename Predicate>
  void Resume(Predicate mayRead) {
    for (std::size_t i = paused_.size(); i-- > 0;) {
      if (mayRead(*paused_[i])) ResumeAt(i);
    }
  }
  bool IsPaused(const Connection& connection) const;

  // Updates the events that epoll reports for a connection, after its queue may have changed.
  void UpdateInterest(Connection& connection);

 private:
  Connection* OldestGone() const;
  Connection* OfGreediest() const;
  template <typename Predicate>
  Connection* Oldest(Predicate accepts) const;
  void BeginTurn(Connection& connection, bool full);
  void ResumeAt(std::size_t index);

  os::Descriptor epoll_;
  std::vector<std::unique_ptr<Connection>> connections_;  // oldest first
  std::uint64_t lastNumber_ = 0;
  std::vector<Connection*> ready_;
  std::size_t turn_ = 0;  // index into ready_
  std::int64_t turnEndMs_ = 0;
  std::vector<Connection*> paused_;
};

}  // namespace ipc
