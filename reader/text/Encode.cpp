#include "Encode.h"

#include <algorithm>
#include <charconv>

#include "Utf8.h"

namespace reader {
namespace {

// C1 control characters, U+0080 to U+009F.
bool IsC1(std::string_view character) {
  return character.size() == 2 && character[0] == '\xC2' && static_cast<unsigned char>(character[1]) < 0xA0;
}

// Replaces control characters other than `kept`, and invalid UTF-8, with "?".
void AppendWithout(std::string_view text, std::string_view kept, std::string& out) {
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t bytes = store::CharacterBytes(text);
    const std::string_view character = text.substr(0, std::max<std::size_t>(bytes, 1));
    const bool isControl = first < 0x20 || first == 0x7F || IsC1(character);
    if (bytes == 0 || (isControl && kept.find(text[0]) == std::string_view::npos)) {
      out += '?';
    } else {
      out += character;
    }
    text.remove_prefix(character.size());
  }
}

}  // namespace

void AppendPrintable(std::string_view text, std::string& out) {
  AppendWithout(text, "", out);
}

std::string Printable(std::string_view text) {
  std::string out;
  AppendPrintable(text, out);
  return out;
}

std::string PrintableLines(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  AppendWithout(text, "\n\t", out);
  return out;
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
    const std::size_t bytes = store::CharacterBytes(text);
    if (bytes == 0) {
      out += "\xEF\xBF\xBD";
    } else if (first < 0x20 || first == 0x7F || IsC1(text.substr(0, bytes))) {
      const auto code = static_cast<unsigned char>(text[bytes - 1]);
      out.append("\\u00").append(1, kHex[code >> 4U]).append(1, kHex[code & 15U]);
    } else {
      if (first == '"' || first == '\\') out += '\\';
      out += text.substr(0, bytes);
    }
    text.remove_prefix(std::max<std::size_t>(bytes, 1));
  }
  out += '"';
}

}  // namespace reader
