#include "items/Item.h"

#include <array>

#include "log/LogLine.h"

namespace {

constexpr LogSource log{"Item"};

}  // namespace

bool Item::DecodeMsg(IpcMessage& message) {
  return DecodeBytes(message.DataPtr(), message.Size());
}

// Whether an item with texts or lists fits is known only after decoding it. So its state is kept
// in its own encoding, and put back when the item turns out to reach beyond the payload.
bool Item::DecodeBytes(unsigned char* p, std::size_t size) {
  if (p != nullptr && size > 0) {
    std::array<unsigned char, IpcMessage::kSlack> before;
    Encode(before.data());
    if (Decode(p) <= p + size) return true;
    Decode(before.data());
  }
  log(kLogMalformed, "Payload of ", static_cast<unsigned int>(size), " bytes is too short for its item");
  return false;
}

bool Item::EncodeMsg(IpcMessage& message) const {
  if (message.DataPtr() == nullptr || message.Size() < Size()) return false;
  Encode(message.DataPtr());
  return true;
}
