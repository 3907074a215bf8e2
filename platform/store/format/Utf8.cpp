#include "Utf8.h"

namespace store {
namespace {

unsigned char ByteAt(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

bool IsContinuation(std::string_view text, std::size_t index) {
  return index < text.size() && (ByteAt(text, index) & 0xC0) == 0x80;
}

}  // namespace

std::size_t CharacterBytes(std::string_view text) {
  const unsigned char first = ByteAt(text, 0);
  if (first < 0x80) return 1;
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if (!IsContinuation(text, i)) return 0;
  }
  const unsigned char second = ByteAt(text, 1);
  const bool tooLong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool surrogate = first == 0xED && second > 0x9F;
  const bool beyond = first == 0xF4 && second > 0x8F;
  return tooLong || surrogate || beyond ? 0 : size;
}

std::string_view CutText(std::string_view text, std::size_t maxBytes) {
  text = text.substr(0, text.find('\0'));
  if (text.size() <= maxBytes) return text;
  std::size_t end = maxBytes;
  for (int i = 0; i < 3 && IsContinuation(text, end); ++i) --end;
  return text.substr(0, end);
}

void MakeUtf8(char* text, std::size_t size) {
  std::size_t at = 0;
  while (at < size) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      ++at;
      continue;
    }
    const std::size_t step = CharacterBytes({text + at, size - at});
    if (step == 0) text[at] = '?';
    at += step == 0 ? 1 : step;
  }
}

}  // namespace store
