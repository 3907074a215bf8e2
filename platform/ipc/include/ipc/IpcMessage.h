#pragma once

#include <cstddef>
#include <memory>
#include <string>

// A message: a type, a payload of 0 to kMaxPayload bytes, and the name of its sender.
//
// Its buffer is allocated once and kept. Behind the payload stand at least kSlack zero bytes, so
// that an item may be decoded from a payload that is shorter than the item without reading
// anything that is not there.
class IpcMessage {
 public:
  static constexpr std::size_t kMaxPayload = 4096;
  static constexpr std::size_t kSlack = 2048;  // no item's encoding is longer

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
  friend class Connection;
  friend class Endpoint;

  // What stands before the payload in a packet is received along with it, in one piece.
  static constexpr std::size_t kHeaderRoom = 4;

  unsigned char* Payload() const { return buffer_.get() + kHeaderRoom; }

  // Takes over `size` bytes that were written into the payload; zeroes what a longer one left
  // behind them.
  void Received(unsigned int type, std::size_t size);
  // Exchanges everything but the senders.
  void SwapContent(IpcMessage& other) noexcept;

  unsigned int type_ = 0;
  std::size_t size_ = 0;
  std::size_t dirty_ = 0;  // bytes of the payload that may be other than zero
  std::unique_ptr<unsigned char[]> buffer_;
  std::string sender_;
};
