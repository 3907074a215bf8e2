#pragma once

#include <string>
#include <string_view>

// Reads bytes from text: two hexadecimal digits each, with optional white space between them.
inline std::string FromHex(std::string_view text) {
  std::string bytes;
  int digits = 0;
  unsigned int byte = 0;
  for (const char c : text) {
    if (c == ' ' || c == '\n') continue;
    byte = byte * 16 + static_cast<unsigned int>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
    if (++digits % 2 == 0) {
      bytes += static_cast<char>(byte);
      byte = 0;
    }
  }
  return bytes;
}

inline std::string ToHex(std::string_view bytes) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

// Zero bytes as hexadecimal text.
inline std::string Zeros(std::size_t bytes) {
  std::string zeros;
  zeros.resize(2 * bytes, '0');
  return zeros;
}
