#pragma once

#include <cstddef>
#include <memory>

#include "ipc/IpcMessage.h"

// A value as it travels in a message's payload. An item is its members back to back, each in the
// encoding of its own class, big-endian, without padding.
class Item {
 public:
  Item() = default;
  virtual ~Item() = default;

  // Bytes that Encode writes; at most IpcMessage::kMaxItem.
  virtual unsigned int Size() const = 0;

  // Writes the item at `p`, where Size() bytes are free; returns the byte behind it.
  virtual unsigned char* Encode(unsigned char* p) const = 0;

  // Reads the item at `p` and returns the byte behind it. It does not know where the payload ends, so
  // IpcMessage::kSlack zero bytes must follow the payload, as in every message. A text or list that is longer
  // than its stated maximum is cut to it and skipped whole, so that the fields behind it are right; no skip
  // is longer than a payload, so that Decode stays within these zero bytes.
  virtual unsigned char* Decode(unsigned char* p) = 0;

  // Decode for the payload of a message: all or nothing. A payload that ends before the item does
  // leaves the item as it was, logs one mask-2 line and returns false. What follows the item in
  // the payload is not read.
  bool DecodeMsg(IpcMessage& message);

  // The same for `size` bytes of a message's payload that begin at `p`.
  bool DecodeBytes(unsigned char* p, std::size_t size);

  // Whether the `size` bytes at `p` of a message's payload hold the whole item. Leaves the item with any
  // value.
  bool Holds(unsigned char* p, std::size_t size);

  // A new item of the same class with its initial value; null where the class does not offer it.
  virtual std::unique_ptr<Item> New() const { return nullptr; }

  // Writes the item into the payload of a message that was allocated with Size() bytes or more;
  // false, and nothing written, when it has fewer.
  bool EncodeMsg(IpcMessage& message) const;

 protected:
  // Whether the size is the same whatever the item holds. Then it is known before decoding whether one fits.
  virtual bool HasFixedSize() const { return false; }

  Item(const Item&) = default;
  Item& operator=(const Item&) = default;

 private:
  bool DecodeFixed(unsigned char* p, std::size_t size);
  bool DecodeOrRestore(unsigned char* p, std::size_t size);
};
