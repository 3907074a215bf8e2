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
// The constructor allocates the buffer once. At least kSlack zero bytes follow the payload, so that decoding
// an item from a payload that is too short stays inside the buffer.
class IpcMessage {
 public:
  static constexpr std::size_t kMaxPayload = 4096;
  static constexpr std::size_t kMaxItem = 2048;                  // longest encoding of an item
  static constexpr std::size_t kSlack = kMaxPayload + kMaxItem;  // see Item::Decode

  // Type 0, no payload, no sender.
  IpcMessage();
  ~IpcMessage();
  IpcMessage(const IpcMessage&) = delete;
  IpcMessage& operator=(const IpcMessage&) = delete;

  unsigned int MsgType() const { return type_; }

  // The payload, or null when it is empty. Valid until the next Allocate, until a receive into the message,
  // or until its destruction.
  unsigned char* DataPtr() { return size_ == 0 ? nullptr : Payload(); }
  const unsigned char* DataPtr() const { return size_ == 0 ? nullptr : Payload(); }
  std::size_t Size() const { return size_; }

  // Endpoint name of the sender; empty for a message made in this process.
  const std::string& GetSender() const { return sender_; }

  // Sets the type and copies `size` bytes at `data` into the payload. `data` may point into the current
  // payload; null data gives zeros. Keeps the sender. Returns 0, or EMSGSIZE and leaves the message unchanged
  // when `size` exceeds kMaxPayload.
  int Allocate(unsigned int type, unsigned int size, char* data);

 private:
  friend class ipc::Connection;
  friend class ipc::Endpoint;

  // A packet is received whole, with its header before the payload.
  static constexpr std::size_t kHeaderRoom = 4;

  unsigned char* Payload() const { return buffer_.get() + kHeaderRoom; }

  // Sets type and size after `size` bytes were written into the payload; zeroes the rest of a longer old
  // payload.
  void Received(unsigned int type, std::size_t size);
  // Swaps everything except the senders.
  void SwapContent(IpcMessage& other) noexcept;

  unsigned int type_ = 0;
  std::size_t size_ = 0;
  std::size_t dirty_ = 0;  // bytes of the payload that may be nonzero
  std::unique_ptr<unsigned char[]> buffer_;
  std::string sender_;
};
