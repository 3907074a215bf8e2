#include "items/RecordItem.h"

#include <algorithm>

namespace {

std::uint16_t Length(const field::Text& text) {
  return static_cast<std::uint16_t>(std::min<std::size_t>(text.size(), field::kMaxText));
}

}  // namespace

unsigned int field::Size(const Text& text) {
  return 2U + Length(text);
}

unsigned char* field::Encode(const Text& text, unsigned char* p) {
  PutU16(p, Length(text));
  return std::copy_n(text.begin(), Length(text), p + 2);
}

const unsigned char* field::Decode(Text& text, const unsigned char* p) {
  const unsigned int length = std::min<unsigned int>(GetU16(p), kMaxText);
  text.assign(reinterpret_cast<const char*>(p + 2), length);
  return p + 2 + length;
}
