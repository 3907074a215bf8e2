#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Connection.h"
#include "ConnectionTable.h"
#include "Deadline.h"
#include "EndpointSocket.h"
#include "HandlerTable.h"
#include "PendingQueue.h"
#include "ShutdownSignals.h"
#include "ipc/LimitedLog.h"
#include "ipc/LinxIpc.h"
#include "ipc/PeerQueue.h"

// What stands behind LinxIpc: the public operations as its header states them, and those of
// PeerQueue.h.
class Endpoint {
 public:
  Endpoint(LinxIpc* owner, std::string name);

  int Init();
  int Receive(int timeoutMs, const Filter& filter, IpcMessage* message);
  int Notify(const std::string& destination, const IpcMessage& message, bool wait);
  IpcMessage& CurrentMessage() { return current_; }

  HandlerTable& Handlers() { return handlers_; }
  void SetShutdown(Registration registration);
  void SetProcessDied(Registration registration) { processDied_ = registration; }

  int Post(const std::string& peer, unsigned int type, const unsigned char* payload, std::size_t size,
           std::size_t maxQueuedBytes);
  // Bytes queued for a peer.
  std::size_t PostedTo(const std::string& peer) const;
  // The number of the connection over which a peer is sent to, 0 when there is none.
  std::uint64_t ConnectionTo(const std::string& peer) const;
  void OnPeerGone(PeerGoneFunction function, void* context);

 private:
  // Messages of one peer that may wait for later while a selective wait looks for another, and
  // those of the peer that the wait is for. Beyond the total only the latter is read.
  static constexpr std::size_t kMaxPendingBytes = 64UL * 1024;
  static constexpr std::size_t kMaxPendingBytesAwaited = 1024UL * 1024;
  static constexpr std::size_t kMaxPendingBytesTotal = 4UL * 1024 * 1024;

  bool TakePending(const Filter& filter, IpcMessage& message);
  int ReadUntil(int timeoutMs, const Filter& filter, IpcMessage& message);
  bool QueueSignals();
  bool ReadReady(const Filter& filter, IpcMessage& message);
  bool TakeInput(Connection& connection, Connection::Input input, const IpcMessage& message);
  void Keep(const IpcMessage& message, Connection& from, const Filter& filter);
  bool MayRead(const Connection& connection, const Filter& filter) const;

  void Accept();
  void TakeHello(Connection& connection, const IpcMessage& hello);
  bool TakeName(const Connection& newcomer, const std::string& name);
  void Refuse(Connection& connection, const char* why);
  void Close(Connection& connection);
  bool MakeRoom();
  void PeerGone(const std::string& peer);
  Connection* ConnectTo(const std::string& name, int& error);

  void Dispatch();
  void DispatchShutdown();
  void DispatchProcessDied();

  LinxIpc* owner_;
  std::string name_;
  EndpointSocket socket_;
  ConnectionTable connections_;
  ShutdownSignals signals_;
  PendingQueue pending_;
  HandlerTable handlers_;
  Registration shutdown_;
  Registration processDied_;
  bool shutdownSeen_ = false;
  IpcMessage current_;
  IpcMessage scratch_;
  LimitedLog refused_;
  LimitedLog dropped_;
  LimitedLog unhandled_;
  PeerGoneFunction peerGone_ = nullptr;
  void* peerGoneContext_ = nullptr;
};
