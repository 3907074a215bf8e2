#include "seal/SealText.h"

#include <charconv>

#include "Crypto.h"

namespace seal {

std::string KeyText(const PublicKey& key) {
  return ToHex(key);
}

bool ParseKey(std::string_view text, PublicKey& key) {
  PublicKey parsed;
  if (text.size() != 2 * parsed.size()) return false;
  const char* digits = text.data();
  for (unsigned char& byte : parsed) {
    const auto [end, error] = std::from_chars(digits, digits + 2, byte, 16);
    if (error != std::errc{} || end != digits + 2) return false;
    digits += 2;
  }
  key = parsed;
  return true;
}

}  // namespace seal
