#include "items/RecordItem.h"

#include <algorithm>

unsigned int field::Size(const Text& text) {
  return 2U + static_cast<unsigned int>(text.View().size());
}

unsigned char* field::Encode(const Text& text, unsigned char* p) {
  const std::string_view bytes = text;
  PutU16(p, static_cast<std::uint16_t>(bytes.size()));
  return std::copy(bytes.begin(), bytes.end(), p + 2);
}

const unsigned char* field::Decode(Text& text, const unsigned char* p) {
  const std::size_t length = SkippedBytes(GetU16(p));
  text = std::string_view(reinterpret_cast<const char*>(p + 2), std::min<std::size_t>(length, kMaxText));
  return p + 2 + length;
}
