#include "ipc/IpcMessage.h"

#include <cerrno>
#include <cstring>

IpcMessage::IpcMessage() : buffer_(std::make_unique<unsigned char[]>(kHeaderRoom + kMaxPayload + kSlack)) {}

IpcMessage::~IpcMessage() = default;

int IpcMessage::Allocate(unsigned int type, unsigned int size, char* data) {
  if (size > kMaxPayload) return EMSGSIZE;
  if (data != nullptr) {
    std::memmove(Payload(), data, size);
  } else {
    std::memset(Payload(), 0, size);
  }
  Received(type, size);
  return 0;
}

void IpcMessage::Received(unsigned int type, std::size_t size) {
  if (size < dirty_) std::memset(Payload() + size, 0, dirty_ - size);
  type_ = type;
  size_ = size;
  dirty_ = size;
}

void IpcMessage::SwapContent(IpcMessage& other) noexcept {
  std::swap(type_, other.type_);
  std::swap(size_, other.size_);
  std::swap(dirty_, other.dirty_);
  buffer_.swap(other.buffer_);
}
