#include "items/Item.h"

#include <array>

#include "log/LogLine.h"

namespace {

constexpr LogSource log{"Item"};

}  // namespace

bool Item::DecodeMsg(IpcMessage& message) {
  return DecodeBytes(message.DataPtr(), message.Size());
}

bool Item::DecodeBytes(unsigned char* p, std::size_t size) {
  if (HasFixedSize() ? DecodeFixed(p, size) : DecodeOrRestore(p, size)) return true;
  log(kLogMalformed, "Payload of ", static_cast<unsigned int>(size), " bytes is too short for its item");
  return false;
}

bool Item::Holds(unsigned char* p, std::size_t size) {
  if (HasFixedSize()) return size >= Size();
  return size > 0 && Decode(p) <= p + size;
}

bool Item::DecodeFixed(unsigned char* p, std::size_t size) {
  if (size < Size()) return false;
  Decode(p);
  return true;
}

// Only decoding shows whether an item with texts or lists fits. So encodes the old value first, and restores
// it when the item ends after the payload.
bool Item::DecodeOrRestore(unsigned char* p, std::size_t size) {
  if (size == 0) return false;
  std::array<unsigned char, IpcMessage::kMaxItem> before;
  Encode(before.data());
  if (Decode(p) <= p + size) return true;
  Decode(before.data());
  return false;
}

bool Item::EncodeMsg(IpcMessage& message) const {
  if (message.DataPtr() == nullptr || message.Size() < Size()) return false;
  Encode(message.DataPtr());
  return true;
}
