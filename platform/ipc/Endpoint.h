#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Connection.h"
#include "ConnectionTable.h"
#include "Deadline.h"
#include "EndpointDirectory.h"
#include "EndpointSocket.h"
#include "HandlerTable.h"
#include "PendingQueue.h"
#include "ShutdownSignals.h"
#include "ipc/LimitedLog.h"
#include "ipc/LinxIpc.h"
#include "ipc/PeerQueue.h"
#include "os/Errno.h"

namespace ipc {

// Implements LinxIpc and PeerQueue.h; their headers state the contract.
class Endpoint {
 public:
  Endpoint(LinxIpc* owner, std::string name);

  os::Errno Init();
  os::Errno InitToAsk();
  os::Errno Receive(int timeoutMs, const Filter& filter, IpcMessage* message);
  os::Errno Notify(const std::string& destination, const IpcMessage& message, bool wait);
  os::Errno NotifyServer(const std::string& server, const IpcMessage& message, bool wait);
  IpcMessage& CurrentMessage() { return current_; }

  HandlerTable& Handlers() { return handlers_; }
  void SetShutdown(Registration registration);
  void SetProcessDied(Registration registration) { processDied_ = registration; }

  os::Errno Post(const std::string& peer, unsigned int type, const unsigned char* payload, std::size_t size,
                 std::size_t maxQueuedBytes);
  std::size_t PostedTo(const std::string& peer) const;
  std::uint64_t ConnectionToServer(const std::string& server) const;
  void OnPeerGone(PeerGoneFunction function, void* context);

 private:
  // Limits of the messages kept during a selective wait: from one peer, from the awaited peer, and from all.
  // Above the total, reads only the awaited peer. That peer may have queued kMaxPostedAnswerBytes before its
  // answer; a message takes more memory here than in its queue.
  static constexpr std::size_t kMaxPendingBytes = 64UL * 1024;
  static constexpr std::size_t kMaxPendingBytesAwaited = 3 * kMaxPostedAnswerBytes;
  static constexpr std::size_t kMaxPendingBytesTotal = 4UL * 1024 * 1024;

  bool TakePending(const Filter& filter, IpcMessage& message);
  bool TakeFrom(PendingQueue& queue, const Filter& filter, IpcMessage& message);
  bool TakeLongWork(const Filter& filter, IpcMessage& message);
  os::Errno ReadUntil(int timeoutMs, const Filter& filter, IpcMessage& message);
  bool LongWorkWaits(const Filter& filter) const;
  bool ShutdownWaits() const { return pending_.HasShutdown() || longWork_.HasShutdown(); }
  bool QueueSignals();
  bool ReadReady(const Filter& filter, IpcMessage& message);
  bool TakeInput(Connection& connection, Connection::Input input, const IpcMessage& message);
  bool IsMessage(const Connection& connection, Connection::Input input, const IpcMessage& message);
  bool Permits(Connection& connection, unsigned int type);
  void Keep(const IpcMessage& message, Connection& from, const Filter& filter);
  bool MayRead(const Connection& connection, const Filter& filter) const;

  os::Errno Open(bool listens);
  Connection::Peer PeerOf(const os::Descriptor& fd) const;
  void Accept();
  void TakeHello(Connection& connection, const IpcMessage& hello);
  bool TakeName(const Connection& newcomer, const std::string& name);
  void Refuse(Connection& connection, const char* why);
  void Close(Connection& connection);
  bool MakeRoom(bool forSystem);
  bool IsConnected(const std::string& peer) const { return connections_.Find(peer) != nullptr; }
  void PeerGone(const std::string& peer);
  Connection* ConnectTo(const std::string& name, os::Errno& error);
  Connection* AddServer(os::Descriptor fd, const std::string& name, os::Errno& error);
  Connection* FindServer(const std::string& name) const;
  Connection* ConnectToServer(const std::string& name, os::Errno& error);
  bool CanSendTo(const std::string& destination) const;
  os::Errno SendOver(Connection& connection, const IpcMessage& message, bool wait);

  void Dispatch();
  void DispatchShutdown();
  void DispatchProcessDied();

  LinxIpc* owner_;
  std::string name_;
  EndpointDirectory directory_;
  EndpointSocket socket_;
  ConnectionTable connections_;
  ShutdownSignals signals_;
  PendingQueue pending_;
  // Requests for long work, and their senders' later messages. The next one starts only after all other peers
  // had a turn.
  PendingQueue longWork_;
  bool othersHadTheirTurn_ = true;
  HandlerTable handlers_;
  Registration shutdown_;
  Registration processDied_;
  bool shutdownSeen_ = false;
  IpcMessage current_;
  IpcMessage scratch_;
  LimitedLog refused_;
  LimitedLog dropped_;
  LimitedLog unhandled_;
  LimitedLog notPermitted_;
  PeerGoneFunction peerGone_ = nullptr;
  void* peerGoneContext_ = nullptr;
};

}  // namespace ipc
