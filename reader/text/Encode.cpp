#include "Encode.h"

#include <algorithm>
#include <charconv>

namespace {

// The length of the UTF-8 character that the text begins with; 0 when it is none.
std::size_t CharacterBytes(std::string_view text) {
  const auto byte = [&text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned int first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t bytes = first >= 0xF0 && first < 0xF5   ? 4
                            : first >= 0xE0 && first < 0xF0 ? 3
                            : first >= 0xC2 && first < 0xE0 ? 2
                                                            : 0;
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
  }
  const bool tooLong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool noCharacter = (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
  return tooLong || noCharacter ? 0 : bytes;
}

}  // namespace

void AppendPrintable(std::string_view text, std::string& out) {
  for (const char c : text) out += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
}

void AppendNumber(std::int64_t number, std::string& out) {
  char digits[24];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
  out.append(digits, static_cast<std::size_t>(end - digits));
}

void AppendDecimal(double number, int decimals, std::string& out) {
  char digits[400];
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, decimals);
  out.append(digits, static_cast<std::size_t>(end - digits));
}

void AppendJson(std::string_view text, std::string& out) {
  constexpr const char* kHex = "0123456789abcdef";
  out += '"';
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t bytes = CharacterBytes(text);
    if (bytes == 0) {
      out += "\xEF\xBF\xBD";
    } else if (first < 0x20 || first == 0x7F) {
      out.append("\\u00").append(1, kHex[first >> 4U]).append(1, kHex[first & 15U]);
    } else {
      if (first == '"' || first == '\\') out += '\\';
      out += text.substr(0, bytes);
    }
    text.remove_prefix(std::max<std::size_t>(bytes, 1));
  }
  out += '"';
}
