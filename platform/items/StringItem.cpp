#include "items/StringItem.h"

#include <algorithm>

#include "system/BigEndian.h"

unsigned char* StringItem::Encode(unsigned char* p) const {
  PutU16(p, static_cast<std::uint16_t>(text_.size()));
  return std::copy(text_.begin(), text_.end(), p + 2);
}

unsigned char* StringItem::Decode(unsigned char* p) {
  const unsigned int length = std::min<unsigned int>(GetU16(p), kMaxLength);
  text_.assign(reinterpret_cast<const char*>(p + 2), length);
  return p + 2 + length;
}
