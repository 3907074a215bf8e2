#pragma once

#include <string>
#include <string_view>

namespace reader {

// Cuts a text to at most `bytes` bytes and adds an ellipsis. Never splits a UTF-8 character.
inline std::string Clipped(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return std::string(text);
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) --bytes;
  return std::string(text.substr(0, bytes)) + "\xE2\x80\xA6";
}

}  // namespace reader
