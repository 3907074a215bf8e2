#pragma once

#include <string>
#include <string_view>

namespace reader {

// The beginning of a text, at most so many bytes and an ellipsis; no character of UTF-8 is cut in two.
inline std::string Clipped(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return std::string(text);
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) --bytes;
  return std::string(text.substr(0, bytes)) + "\xE2\x80\xA6";
}

}  // namespace reader
