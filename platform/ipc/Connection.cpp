#include "Connection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "Deadline.h"
#include "Wire.h"
#include "system/BigEndian.h"

namespace ipc {

Connection::Connection(os::Descriptor fd, Origin origin, Peer peer, std::string name, std::uint64_t number)
    : fd_(std::move(fd)), origin_(origin), peer_(peer), name_(std::move(name)), number_(number) {}

bool Connection::HungUp() const {
  pollfd state{fd(), 0, 0};
  return poll(&state, 1, 0) == 1 && (state.revents & (POLLHUP | POLLERR)) != 0;
}

// Uses recv with one buffer: recvmsg takes a quarter more time.
Connection::Input Connection::Read(IpcMessage& message) {
  static_assert(IpcMessage::kHeaderRoom == wire::kHeaderSize);
  constexpr std::size_t kRoom = wire::kHeaderSize + IpcMessage::kMaxPayload;
  unsigned char* packet = message.buffer_.get();
  ssize_t got = 0;
  do {  // ECONNRESET: the peer closed with unread input; its last packets follow
    got = recv(fd(), packet, kRoom, MSG_DONTWAIT | MSG_TRUNC);
  } while (got < 0 && (errno == EINTR || errno == ECONNRESET));
  if (got < 0) return errno == EAGAIN || errno == EWOULDBLOCK ? Input::kNothing : Input::kClosed;
  if (got == 0) return Input::kClosed;  // closed, or an empty packet

  const auto size = static_cast<std::size_t>(got);  // of the whole packet, even if truncated
  const bool garbage = size < wire::kHeaderSize;
  message.Received(garbage ? 0 : GetU32(packet), garbage ? 0 : std::min(size, kRoom) - wire::kHeaderSize);
  if (size > kRoom) return Input::kOversized;
  return garbage ? Input::kGarbage : Input::kMessage;
}

os::Errno Connection::SendNow(unsigned int type, const unsigned char* payload, std::size_t size) {
  std::array<unsigned char, wire::kHeaderSize> header;
  PutU32(header.data(), type);
  // sendmsg only reads; iovec has no const form.
  std::array<iovec, 2> parts{{{header.data(), header.size()}, {const_cast<unsigned char*>(payload), size}}};
  msghdr packet{};
  packet.msg_iov = parts.data();
  packet.msg_iovlen = size == 0 ? 1 : 2;
  ssize_t sent = 0;
  do {
    sent = sendmsg(fd(), &packet, MSG_DONTWAIT | MSG_NOSIGNAL);
  } while (sent < 0 && errno == EINTR);
  if (sent >= 0) {
    waitUsedUp_ = false;
    return 0;
  }
  if (errno == EAGAIN || errno == EWOULDBLOCK || errno == ENOBUFS) return EAGAIN;
  sendFailed_ = true;
  return errno;
}

os::Errno Connection::Send(unsigned int type, const unsigned char* payload, std::size_t size) {
  Flush();
  if (sendFailed_) return EPIPE;
  return HasQueued() ? EAGAIN : SendNow(type, payload, size);
}

os::Errno Connection::SendPatiently(unsigned int type, const unsigned char* payload, std::size_t size) {
  os::Errno result = Send(type, payload, size);
  if (result != EAGAIN || waitUsedUp_) return result;
  const Deadline deadline(kMaxWaitMs);
  while (result == EAGAIN && deadline.RemainingMs() > 0) {
    pollfd room{fd(), POLLOUT, 0};
    (void)poll(&room, 1, deadline.RemainingMs());
    result = Send(type, payload, size);
  }
  waitUsedUp_ = result == EAGAIN;
  return result;
}

os::Errno Connection::Post(unsigned int type, const unsigned char* payload, std::size_t size,
                           std::size_t maxQueuedBytes) {
  const os::Errno result = Send(type, payload, size);
  if (result != EAGAIN) return result;
  Queued queued{type, {payload, payload + size}};
  if (queuedBytes_ + queued.Bytes() > maxQueuedBytes) return EAGAIN;
  queuedBytes_ += queued.Bytes();
  queue_.push_back(std::move(queued));
  return 0;
}

void Connection::Flush() {
  while (!queue_.empty()) {
    const Queued& first = queue_.front();
    if (SendNow(first.type, first.payload.data(), first.payload.size()) == EAGAIN) return;
    queuedBytes_ -= first.Bytes();  // sent, or the peer is gone
    queue_.pop_front();
  }
}

}  // namespace ipc
