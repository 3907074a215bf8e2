#pragma once

#include <cstddef>
#include <memory>

#include "ipc/IpcMessage.h"

// A value in a message's payload. An item's encoding is that of its members in order, big-endian, without
// padding.
class Item {
 public:
  Item() = default;
  virtual ~Item() = default;

  // The number of bytes that Encode writes; at most IpcMessage::kMaxItem.
  virtual unsigned int Size() const = 0;

  // Writes the item at `p`, which must have room for Size() bytes; returns the first byte after it.
  virtual unsigned char* Encode(unsigned char* p) const = 0;

  // Reads the item at `p` and returns the first byte after it. Does not know where the payload ends, so
  // IpcMessage::kSlack zero bytes must follow the payload, as in every message. Cuts a text or list to its
  // maximum length, but skips all of it, so that later fields are read correctly. Skips at most the length of
  // a payload, so that Decode stays within these zero bytes.
  virtual unsigned char* Decode(unsigned char* p) = 0;

  // Decodes the payload of a message. If the payload is too short, leaves the item unchanged, logs one line
  // with mask 2 and returns false. Ignores bytes after the item.
  bool DecodeMsg(IpcMessage& message);

  // Like DecodeMsg, for the `size` bytes at `p` of a message's payload.
  bool DecodeBytes(unsigned char* p, std::size_t size);

  // Whether the `size` bytes at `p` of a message's payload hold the whole item. The item's value is undefined
  // afterwards.
  bool Holds(unsigned char* p, std::size_t size);

  // Returns a new item of the same class with its initial value; null when the class does not support it.
  virtual std::unique_ptr<Item> New() const { return nullptr; }

  // Writes the item into a message's payload. Returns false and writes nothing when the payload has fewer
  // than Size() bytes.
  bool EncodeMsg(IpcMessage& message) const;

 protected:
  // Whether the size does not depend on the value. Then Size() shows before decoding whether the payload is
  // long enough.
  virtual bool HasFixedSize() const { return false; }

  Item(const Item&) = default;
  Item& operator=(const Item&) = default;

 private:
  bool DecodeFixed(unsigned char* p, std::size_t size);
  bool DecodeOrRestore(unsigned char* p, std::size_t size);
};
