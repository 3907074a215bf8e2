#include "items/StringItem.h"

#include <algorithm>

#include "items/Text.h"
#include "system/BigEndian.h"

unsigned char* StringItem::Encode(unsigned char* p) const {
  PutU16(p, static_cast<std::uint16_t>(text_.size()));
  return std::copy(text_.begin(), text_.end(), p + 2);
}

unsigned char* StringItem::Decode(unsigned char* p) {
  const std::size_t length = field::SkippedBytes(GetU16(p));
  text_.assign(reinterpret_cast<const char*>(p + 2), std::min<std::size_t>(length, kMaxLength));
  return p + 2 + length;
}
