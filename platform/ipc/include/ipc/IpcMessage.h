#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace ipc {
class Connection;
class Endpoint;
}  // namespace ipc

// A message: a type, a payload of 0 to kMaxPayload bytes, and the name of its sender.
//
// Its buffer is allocated once and kept. At least kSlack zero bytes follow the payload, so that an item can
// be decoded from a payload that is too short for it without reading beyond the buffer.
class IpcMessage {
 public:
  static constexpr std::size_t kMaxPayload = 4096;
  static constexpr std::size_t kMaxItem = 2048;                  // no item's encoding is longer
  static constexpr std::size_t kSlack = kMaxPayload + kMaxItem;  // see Item::Decode

  // Type 0, no payload, no sender.
  IpcMessage();
  ~IpcMessage();
  IpcMessage(const IpcMessage&) = delete;
  IpcMessage& operator=(const IpcMessage&) = delete;

  unsigned int MsgType() const { return type_; }

  // The payload, or null when there is none. Valid until the message is allocated, received into
  // or destroyed.
  unsigned char* DataPtr() { return size_ == 0 ? nullptr : Payload(); }
  const unsigned char* DataPtr() const { return size_ == 0 ? nullptr : Payload(); }
  std::size_t Size() const { return size_; }

  // Endpoint name of the process that sent the message; empty for one made here.
  const std::string& GetSender() const { return sender_; }

  // Makes this a message of `type` whose payload is a copy of the `size` bytes at `data`, which
  // may lie in the present payload; null data gives zeros. The sender stays. Returns 0, or
  // EMSGSIZE when `size` exceeds kMaxPayload (the message is then unchanged).
  int Allocate(unsigned int type, unsigned int size, char* data);

 private:
  friend class ipc::Connection;
  friend class ipc::Endpoint;

  // A packet is received in one piece: its header stands before the payload.
  static constexpr std::size_t kHeaderRoom = 4;

  unsigned char* Payload() const { return buffer_.get() + kHeaderRoom; }

  // Makes the `size` bytes that were written into the payload the message's own, and zeroes the rest of a
  // longer one.
  void Received(unsigned int type, std::size_t size);
  // Exchanges everything but the senders.
  void SwapContent(IpcMessage& other) noexcept;

  unsigned int type_ = 0;
  std::size_t size_ = 0;
  std::size_t dirty_ = 0;  // bytes of the payload that may be other than zero
  std::unique_ptr<unsigned char[]> buffer_;
  std::string sender_;
};
