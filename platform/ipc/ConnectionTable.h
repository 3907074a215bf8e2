#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Connection.h"

// The connections of an endpoint and the waiting for them.
//
// Readiness is level-triggered. One wake-up collects the connections that are ready; each then
// delivers at most kTurn packets before the next wait, and none any more once they have taken
// kTurnMs, so that peers are served in turn. Most events come alone, and to look for another behind
// each would take as long as to receive it; so a turn is one packet until kLoneTurns of them came in
// a row.
class ConnectionTable {
 public:
  static constexpr std::size_t kMaxConnections = 128;
  static constexpr std::size_t kFairShare = 16;  // connections that one process may keep of a full table
  static constexpr int kTurn = 16;
  static constexpr int kTurnMs = 10;
  static constexpr int kLoneTurns = 8;

  // What a wait found besides connections.
  struct WakeUp {
    bool accept = false;
    bool signal = false;
  };

  ConnectionTable() = default;
  ~ConnectionTable();
  ConnectionTable(const ConnectionTable&) = delete;
  ConnectionTable& operator=(const ConnectionTable&) = delete;

  // 0 or an errno value. `listenFd` is waited for from now on.
  int Open(int listenFd);
  bool IsOpen() const { return epollFd_ >= 0; }
  // Waits for `fd` too; it stops by itself when the descriptor is closed.
  void WatchSignals(int fd);

  bool Full() const { return connections_.size() >= kMaxConnections; }
  // Which one is to be removed for another one: the oldest whose peer is gone; else, of the process that
  // has most when these are more than kFairShare, the oldest without a name, else its oldest; else the
  // oldest without a name. Null: none.
  Connection* FirstToGo() const;

  // Makes a connection of `fd`; the table must not be full.
  Connection* Add(int fd, Connection::Origin origin, const std::string& name);
  void Remove(Connection* connection);

  // The connection over which a peer is sent to, or null.
  Connection* Find(const std::string& name) const;
  // All connections of that name, also those that nothing is sent over any more.
  std::vector<Connection*> Named(const std::string& name) const;

  // The connection whose turn it is to deliver, or null when all have had theirs. It stays the
  // one until Done is called or its turn is over.
  Connection* NextReady();
  void Done();

  // Waits for at most `timeoutMs` and collects what is ready. With 0 all get full turns: who does not
  // wait wants all that is there.
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
  Connection* OldestNameless(Predicate accepts) const;
  void BeginTurn(Connection& connection, bool full);
  void ResumeAt(std::size_t index);

  int epollFd_ = -1;
  std::vector<std::unique_ptr<Connection>> connections_;  // oldest first
  std::uint64_t lastNumber_ = 0;
  std::vector<Connection*> ready_;
  std::size_t turn_ = 0;  // index into ready_
  std::int64_t turnEndMs_ = 0;
  std::vector<Connection*> paused_;
};
