#include "Endpoint.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "Wire.h"
#include "ipc/LinxServerNameList.h"
#include "log/LogLine.h"
#include "system/Process.h"

namespace {

constexpr LogSource log{"LinxIpc"};

}  // namespace

Endpoint::Endpoint(LinxIpc* owner, std::string name)
    : owner_(owner),
      name_(std::move(name)),
      refused_(log, kLogMalformed),
      dropped_(log, kLogMalformed),
      unhandled_(log, kLogMalformed) {}

int Endpoint::Init() {
  int error = wire::ValidName(name_) ? socket_.Open(name_) : EINVAL;
  if (error == 0) error = connections_.Open(socket_.fd());
  if (error == 0 && signals_.fd() >= 0) connections_.WatchSignals(signals_.fd());
  if (error != 0) log(kLogError, "Cannot open endpoint ", name_, ": ", std::strerror(error));
  return error;
}

// ---- Receiving

int Endpoint::Receive(int timeoutMs, const Filter& filter, IpcMessage* message) {
  if (!connections_.IsOpen()) return EINVAL;
  IpcMessage& target = message != nullptr ? *message : current_;
  connections_.Resume([&](const Connection& paused) { return MayRead(paused, filter); });
  const int result = TakePending(filter, target) ? 0 : ReadUntil(timeoutMs, filter, target);
  if (filter.selective) return result;
  if (result == 0) Dispatch();
  return shutdownSeen_ ? ESHUTDOWN : result;
}

bool Endpoint::TakePending(const Filter& filter, IpcMessage& message) {
  if (pending_.Empty()) return false;
  PendingMessage taken;
  if (!pending_.Take(filter, taken)) return false;
  std::copy(taken.payload.begin(), taken.payload.end(), message.Payload());
  message.Received(taken.type, taken.payload.size());
  message.sender_ = taken.sender;
  return true;
}

int Endpoint::ReadUntil(int timeoutMs, const Filter& filter, IpcMessage& message) {
  if (ReadReady(filter, message)) return 0;  // what is there needs no look at the clock
  const Deadline deadline(timeoutMs);
  for (;;) {
    const int leftMs = deadline.RemainingMs();
    const ConnectionTable::WakeUp wakeUp = connections_.Wait(leftMs);
    if (wakeUp.accept) Accept();
    if (wakeUp.signal && QueueSignals() && TakePending(filter, message)) return 0;
    if (ReadReady(filter, message)) return 0;
    if (leftMs == 0) return ETIMEDOUT;
  }
}

// A signal becomes a shutdown notice of no sender.
bool Endpoint::QueueSignals() {
  bool any = false;
  while (signals_.Take()) {
    pending_.Add({LinxIpc::kShutdownNotice, "", {}});
    any = true;
  }
  return any;
}

// Reads what the last wait found until a message matches; the others are kept for later.
bool Endpoint::ReadReady(const Filter& filter, IpcMessage& message) {
  while (Connection* connection = connections_.NextReady()) {
    const Connection::Input input = connection->Read(scratch_);
    if (!TakeInput(*connection, input, scratch_)) continue;
    if (filter.Matches(scratch_.MsgType(), connection->name())) {
      message.SwapContent(scratch_);
      message.sender_ = connection->name();
      return true;
    }
    Keep(scratch_, *connection, filter);
  }
  return false;
}

// True when `message` is one for this process. Ends connections that say nothing useful.
bool Endpoint::TakeInput(Connection& connection, Connection::Input input, const IpcMessage& message) {
  using Input = Connection::Input;
  if (input == Input::kNothing) {
    connections_.Done();
    return false;
  }
  if (input == Input::kClosed) {
    Close(connection);
    return false;
  }
  const bool nameless = connection.name().empty();
  if (nameless && (input != Input::kMessage || message.MsgType() != wire::kHelloType)) {
    Refuse(connection, "it did not begin with a hello");
    return false;
  }
  if (nameless) {
    TakeHello(connection, message);
    return false;
  }
  if (input == Input::kMessage && message.MsgType() != wire::kHelloType) return true;
  dropped_("Dropped a packet from ", connection.name(), ": ",
           input == Input::kOversized ? "too long"
           : input == Input::kGarbage ? "too short"
                                      : "second hello");
  return false;
}

void Endpoint::Keep(const IpcMessage& message, Connection& from, const Filter& filter) {
  const unsigned char* payload = message.DataPtr();
  pending_.Add({message.MsgType(), from.name(), {payload, payload + message.Size()}});
  if (!MayRead(from, filter)) connections_.Pause(from);
}

bool Endpoint::MayRead(const Connection& connection, const Filter& filter) const {
  const std::size_t held = pending_.BytesFrom(connection.name());
  if (filter.selective && filter.sender == connection.name()) return held < kMaxPendingBytesAwaited;
  const bool anySender = filter.selective && filter.sender.empty();
  return held < (anySender ? kMaxPendingBytesAwaited : kMaxPendingBytes) &&
         pending_.Bytes() < kMaxPendingBytesTotal;
}

// ---- Dispatch

void Endpoint::Dispatch() {
  const unsigned int type = current_.MsgType();
  if (type == LinxIpc::kShutdownNotice) {
    DispatchShutdown();
  } else if (type == LinxIpc::kProcessDiedNotice) {
    DispatchProcessDied();
  } else if (!handlers_.Call(type, owner_)) {
    unhandled_("No handler for message ", type, " from ", current_.GetSender());
  }
}

// The handler may answer in the current message; whoever looks at it afterwards is to see what
// came.
void Endpoint::DispatchShutdown() {
  shutdownSeen_ = true;
  const Registration registration = shutdown_;
  if (registration.handler != nullptr) registration.handler(owner_, registration.context);
  (void)current_.Allocate(LinxIpc::kShutdownNotice, 0, nullptr);
}

void Endpoint::DispatchProcessDied() {
  if (current_.GetSender() != LinxServerNameList::Instance().Name(e_Process_StateMgr)) {
    unhandled_("Dropped a process-died notice from ", current_.GetSender());
    return;
  }
  const Registration registration = processDied_;
  if (registration.handler != nullptr) registration.handler(owner_, registration.context);
}

void Endpoint::SetShutdown(Registration registration) {
  shutdown_ = registration;
  if (registration.handler == nullptr) {
    (void)QueueSignals();  // they came in time
    signals_.Release();
  } else if (signals_.Catch() == 0) {
    connections_.WatchSignals(signals_.fd());
  }
}

// ---- Connections

void Endpoint::Accept() {
  constexpr int kPerWakeUp = 8;
  for (int i = 0; i < kPerWakeUp; ++i) {
    const int fd = socket_.Accept();
    if (fd < 0) return;
    if (MakeRoom()) {
      (void)connections_.Add(fd, Connection::Origin::kAccepted, "");
    } else {
      close(fd);
    }
  }
}

// For one more connection.
bool Endpoint::MakeRoom() {
  if (!connections_.Full()) return true;
  Connection* first = connections_.FirstToGo();
  if (first == nullptr) return false;
  if (!first->name().empty()) {
    refused_("Closed a connection of ", first->name(), ", process ", first->PeerProcessId(),
             first->HungUp() ? ", which is gone: no room for what it had sent" : ", which has most of them");
  }
  Close(*first);
  return true;
}

void Endpoint::TakeHello(Connection& connection, const IpcMessage& hello) {
  const unsigned char* payload = hello.DataPtr();
  if (payload == nullptr || payload[0] != wire::kVersion) {
    Refuse(connection, "it speaks another version");
    return;
  }
  const std::string name(payload + 1, payload + hello.Size());
  if (!wire::ValidName(name) || name == name_) {
    Refuse(connection, "its name is none");
    return;
  }
  if (TakeName(connection, name)) {
    connection.SetName(name);
  } else {
    Refuse(connection, "its name is in use");
  }
}

// A name is one process's as long as it is connected. A connection that was made from here to the
// same process is no hindrance: both sides may connect at the same time. Where only dead connections
// are left the peer was restarted; what its predecessor sent is still read.
bool Endpoint::TakeName(const Connection& newcomer, const std::string& name) {
  const std::vector<Connection*> holders = connections_.Named(name);
  bool inUse = false;
  for (Connection* holder : holders) {
    const bool ours = holder->origin() == Connection::Origin::kConnected;
    if (holder->HungUp()) {
      holder->StopSending();
    } else if (!ours || holder->PeerProcessId() != newcomer.PeerProcessId()) {
      inUse = true;
    }
  }
  if (!inUse && !holders.empty() && ConnectionTo(name) == 0) PeerGone(name);
  return !inUse;
}

void Endpoint::Refuse(Connection& connection, const char* why) {
  refused_("Refused a connection of process ", connection.PeerProcessId(), ": ", why);
  Close(connection);
}

void Endpoint::Close(Connection& connection) {
  const std::string name = connection.name();
  connections_.Remove(&connection);
  if (!name.empty() && ConnectionTo(name) == 0) PeerGone(name);
}

void Endpoint::PeerGone(const std::string& peer) {
  if (peerGone_ != nullptr) peerGone_(peerGoneContext_, peer);
}

void Endpoint::OnPeerGone(PeerGoneFunction function, void* context) {
  peerGone_ = function;
  peerGoneContext_ = context;
}

// ---- Sending

Connection* Endpoint::ConnectTo(const std::string& name, int& error) {
  int fd = -1;
  error = EndpointSocket::Connect(name, fd);
  if (error != 0) return nullptr;
  if (!MakeRoom()) {
    close(fd);
    error = EMFILE;
    return nullptr;
  }
  Connection* connection = connections_.Add(fd, Connection::Origin::kConnected, name);
  std::string hello(1, static_cast<char>(wire::kVersion));
  hello += name_;
  error =
      connection->Send(wire::kHelloType, reinterpret_cast<const unsigned char*>(hello.data()), hello.size());
  if (error == 0) return connection;
  Close(*connection);
  return nullptr;
}

int Endpoint::Notify(const std::string& destination, const IpcMessage& message, bool wait) {
  if (!connections_.IsOpen() || !wire::ValidName(destination) || destination == name_) return EINVAL;
  for (;;) {
    Connection* connection = connections_.Find(destination);
    const bool isNew = connection == nullptr;
    int error = 0;
    if (isNew) connection = ConnectTo(destination, error);
    if (connection == nullptr) return error;
    error = wait ? connection->SendPatiently(message.MsgType(), message.DataPtr(), message.Size())
                 : connection->Send(message.MsgType(), message.DataPtr(), message.Size());
    connections_.UpdateInterest(*connection);
    if (error == 0 || error == EAGAIN || isNew) return error;
    // The peer closed a connection that stood; it may be there again.
  }
}

// A connection that fails is passed over from then on: the peer may have made another.
int Endpoint::Post(const std::string& peer, unsigned int type, const unsigned char* payload, std::size_t size,
                   std::size_t maxQueuedBytes) {
  while (Connection* connection = connections_.Find(peer)) {
    const int error = connection->Post(type, payload, size, maxQueuedBytes);
    connections_.UpdateInterest(*connection);
    if (error == 0 || error == EAGAIN) return error;
  }
  return ENOTCONN;
}

std::size_t Endpoint::PostedTo(const std::string& peer) const {
  const Connection* connection = connections_.Find(peer);
  return connection != nullptr ? connection->QueuedBytes() : 0;
}

std::uint64_t Endpoint::ConnectionTo(const std::string& peer) const {
  const Connection* connection = connections_.Find(peer);
  return connection != nullptr ? connection->number() : 0;
}
