#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Payloads as tests write them: "0000001301" is the five bytes 0, 0, 0, 0x13, 1.

inline std::string FromHex(std::string_view hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoul(std::string(hex.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

inline std::string ToHex(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string hex;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}
