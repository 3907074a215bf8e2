#include "Endpoint.h"

#include <algorithm>
#include <utility>

#include "IpcLog.h"
#include "ObserverRules.h"
#include "Wire.h"

// Opening and receiving.

namespace ipc {

Endpoint::Endpoint(LinxIpc* owner, std::string name)
    : owner_(owner),
      name_(std::move(name)),
      refused_(kIpcLog, kLogMalformed),
      dropped_(kIpcLog, kLogMalformed),
      unhandled_(kIpcLog, kLogMalformed),
      notPermitted_(kIpcLog, kLogMalformed) {}

os::Errno Endpoint::Init() {
  return Open(true);
}

os::Errno Endpoint::InitToAsk() {
  return Open(false);
}

os::Errno Endpoint::Open(bool listens) {
  os::Errno error = wire::ValidName(name_) ? directory_.Open() : EINVAL;
  if (!error.Failed() && listens) error = socket_.Open(directory_, name_);
  if (!error.Failed()) error = connections_.Open();
  if (!error.Failed() && listens) error = connections_.WatchListening(socket_.Fd());
  if (!error.Failed() && signals_.Fd() >= 0) connections_.WatchSignals(signals_.Fd());
  if (error.Failed()) kIpcLog(kLogError, "Cannot open endpoint ", name_, ": ", error.Text());
  return error;
}

os::Errno Endpoint::Receive(int timeoutMs, const Filter& filter, IpcMessage* message) {
  if (!connections_.IsOpen()) return EINVAL;
  IpcMessage& target = message != nullptr ? *message : current_;
  connections_.Resume([&](const Connection& paused) { return MayRead(paused, filter); });
  const os::Errno result = TakePending(filter, target) ? os::Errno() : ReadUntil(timeoutMs, filter, target);
  if (filter.selective) return result;
  if (!result.Failed()) Dispatch();
  return shutdownSeen_ ? os::Errno(ESHUTDOWN) : result;
}

bool Endpoint::TakePending(const Filter& filter, IpcMessage& message) {
  return TakeFrom(pending_, filter, message) || (filter.selective && TakeFrom(longWork_, filter, message));
}

bool Endpoint::TakeFrom(PendingQueue& queue, const Filter& filter, IpcMessage& message) {
  if (queue.Empty()) return false;
  PendingMessage taken;
  if (!queue.Take(filter, taken)) return false;
  std::copy(taken.payload.begin(), taken.payload.end(), message.Payload());
  message.Received(taken.type, taken.payload.size());
  message.sender_ = taken.sender;
  return true;
}

bool Endpoint::LongWorkWaits(const Filter& filter) const {
  return !filter.selective && !longWork_.Empty() && longWork_.Has(filter);
}

bool Endpoint::TakeLongWork(const Filter& filter, IpcMessage& message) {
  if (filter.selective || !othersHadTheirTurn_ || !TakeFrom(longWork_, filter, message)) return false;
  othersHadTheirTurn_ = false;
  return true;
}

// At the start of each pass, every connection that the last wait found has had its turn.
os::Errno Endpoint::ReadUntil(int timeoutMs, const Filter& filter, IpcMessage& message) {
  if (ReadReady(filter, message)) return 0;  // a queued message needs no clock
  const Deadline deadline(timeoutMs);
  for (;;) {
    if (TakeLongWork(filter, message)) return 0;
    const bool cut = filter.selective && ShutdownWaits();
    const int leftMs = cut || LongWorkWaits(filter) ? 0 : deadline.RemainingMs();
    const ConnectionTable::WakeUp wakeUp = connections_.Wait(leftMs);
    othersHadTheirTurn_ = true;
    if (wakeUp.accept) Accept();
    if (wakeUp.signal && QueueSignals() && TakePending(filter, message)) return 0;
    if (ReadReady(filter, message)) return 0;
    if (cut) return ESHUTDOWN;
    if (leftMs == 0 && !LongWorkWaits(filter)) return ETIMEDOUT;
  }
}

// Turns signals into shutdown notices without a sender.
bool Endpoint::QueueSignals() {
  bool any = false;
  while (signals_.Take()) {
    pending_.Add({LinxIpc::kShutdownNotice, "", {}});
    any = true;
  }
  return any;
}

// Reads from the ready connections until a message matches; keeps other messages for later.
bool Endpoint::ReadReady(const Filter& filter, IpcMessage& message) {
  while (Connection* connection = connections_.NextReady()) {
    const Connection::Input input = connection->Read(scratch_);
    if (!TakeInput(*connection, input, scratch_)) continue;
    const unsigned int type = scratch_.MsgType();
    if (filter.Matches(type, connection->name()) && (filter.selective || !IsLongWork(type))) {
      message.SwapContent(scratch_);
      message.sender_ = connection->name();
      return true;
    }
    Keep(scratch_, *connection, filter);
  }
  return false;
}

// True when `message` may be delivered. Closes an unusable connection.
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
  if (!connection.name().empty())
    return IsMessage(connection, input, message) && Permits(connection, message.MsgType());
  if (input == Input::kMessage && message.MsgType() == wire::kHelloType) {
    TakeHello(connection, message);
  } else {
    Refuse(connection, "it did not begin with a hello");
  }
  return false;
}

bool Endpoint::IsMessage(const Connection& connection, Connection::Input input, const IpcMessage& message) {
  using Input = Connection::Input;
  if (input == Input::kMessage && message.MsgType() != wire::kHelloType) return true;
  dropped_("Dropped a packet from ", connection.name(), ": ",
           input == Input::kOversized ? "too long"
           : input == Input::kGarbage ? "too short"
                                      : "second hello");
  return false;
}

bool Endpoint::Permits(Connection& connection, unsigned int type) {
  if (connection.peer().isSystem || OpenToObservers(type)) return true;
  notPermitted_("Dropped message ", type, " from ", connection.name(), ", user ",
                connection.peer().process.user, ": observers may only ask");
  if (const unsigned int answer = RefusalOf(type); answer != 0) {
    const unsigned char no = 0;
    (void)connection.Send(answer, &no, sizeof no);
  }
  return false;
}

void Endpoint::Keep(const IpcMessage& message, Connection& from, const Filter& filter) {
  const unsigned char* payload = message.DataPtr();
  const bool waits = IsLongWork(message.MsgType()) || longWork_.BytesFrom(from.name()) != 0;
  PendingQueue& queue = waits ? longWork_ : pending_;
  queue.Add({message.MsgType(), from.name(), {payload, payload + message.Size()}});
  if (!MayRead(from, filter)) connections_.Pause(from);
}

// Does not read a peer with waiting long work, so that its messages stay in order. A selective wait reads it,
// since it may wait for that peer's answer.
bool Endpoint::MayRead(const Connection& connection, const Filter& filter) const {
  const std::size_t waiting = longWork_.BytesFrom(connection.name());
  if (waiting != 0 && !filter.selective) return false;
  const std::size_t held = pending_.BytesFrom(connection.name()) + waiting;
  if (filter.selective && filter.sender == connection.name()) return held < kMaxPendingBytesAwaited;
  const bool anySender = filter.selective && filter.sender.empty();
  return held < (anySender ? kMaxPendingBytesAwaited : kMaxPendingBytes) &&
         pending_.Bytes() + longWork_.Bytes() < kMaxPendingBytesTotal;
}

}  // namespace ipc
