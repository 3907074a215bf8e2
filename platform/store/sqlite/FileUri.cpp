#include "FileUri.h"

#include <cctype>

namespace store {

std::string FileUri(const std::string& path, const std::string& parameters) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || c == '/' || c == '.' || c == '-' || c == '_') {
      uri += c;
    } else {
      uri.append({'%', kHex[byte >> 4], kHex[byte & 15]});
    }
  }
  return uri + parameters;
}

}  // namespace store
