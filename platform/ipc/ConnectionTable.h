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

// The connections of an endpoint and the waiting for them.
//
// Readiness is level-triggered. A wait collects the connections that are ready. Each then has its turn: at
// most kTurn packets, and at most kTurnMs. Looking for a second packet costs as much as receiving one, and
// most events come alone: so a turn is one packet, until kLoneTurns of them came in a row.
class ConnectionTable {
 public:
  static constexpr std::size_t kMaxConnections = 128;
  static constexpr std::size_t kFairShare = 16;  // connections that one process keeps when the table is full
  static constexpr int kTurn = 16;
  static constexpr int kTurnMs = 10;
  static constexpr int kLoneTurns = 8;

  // What a wait found besides connections.
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
  // Waits for `fd` too; it stops by itself when the descriptor is closed.
  void WatchSignals(int fd);

  bool Full() const { return connections_.size() >= kMaxConnections; }
  // The connection to close for a new one, null when there is none. In this order: the oldest whose peer is
  // gone; of the process that has more than kFairShare and most of all, the oldest without a name, else its
  // oldest; the oldest without a name; for the system, the oldest of an observer.
  Connection* FirstToGo(bool forSystem) const;

  // Adds a connection; the table must not be full.
  Connection* Add(os::Descriptor fd, Connection::Origin origin, Connection::Peer peer,
                  const std::string& name);
  void Remove(Connection* connection);

  // The connection over which a peer is sent to, or null.
  Connection* Find(const std::string& name) const;
  // All connections of that name, also those over which nothing is sent any more.
  std::vector<Connection*> Named(const std::string& name) const;

  // The connection whose turn it is, or null when all have had theirs. It stays the same until Done is called
  // or its turn is over.
  Connection* NextReady();
  void Done();

  // Waits for at most `timeoutMs` and collects what is ready. With 0 all get full turns: a caller that does
  // not wait gets everything that has arrived.
  WakeUp Wait(int timeoutMs);

  // Stops and resumes reading from a connection. The system pushes back on a peer whose packets
  // stay where they are.
  void Pause(Connection& connection);
  // Resumes all paused connections that `mayRead` accepts.
  template <typename Predicate>
  void Resume(Predicate mayRead) {
    for (std::size_t i = paused_.size(); i-- > 0;) {
      if (mayRead(*paused_[i])) ResumeAt(i);
    }
  }
  bool IsPaused(const Connection& connection) const;

  // Tells the system what to wait for on a connection, after its queue may have changed.
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
