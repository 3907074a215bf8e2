#include "Words.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace bench {

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

}  // namespace

Words SplitWords(std::string_view text) {
  Words words;
  for (;;) {
    const std::size_t begin = text.find_first_not_of(kWhiteSpace);
    if (begin == std::string_view::npos) return words;
    const std::size_t end = std::min(text.find_first_of(kWhiteSpace, begin), text.size());
    words.emplace_back(text.substr(begin, end - begin));
    text.remove_prefix(end);
  }
}

std::string JoinWords(const Words& words, std::size_t first) {
  std::string text;
  for (std::size_t i = first; i < words.size(); ++i) {
    if (i > first) text += ' ';
    text += words[i];
  }
  return text;
}

std::string Quoted(std::string_view word) {
  constexpr std::size_t kMaxShown = 60;
  std::string text(word.substr(0, kMaxShown));
  std::replace_if(text.begin(), text.end(), IsControl, '?');
  return "'" + text + (word.size() > kMaxShown ? "...'" : "'");
}

bool ReadNumber(std::string_view word, std::uint32_t& value) {
  const bool hexadecimal = word.starts_with("0x") || word.starts_with("0X");
  if (hexadecimal) word.remove_prefix(2);
  std::uint32_t number = 0;
  const char* end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, number, hexadecimal ? 16 : 10);
  if (error != std::errc() || rest != end) return false;
  value = number;
  return true;
}

bool ReadDecimal(std::string_view word, double& value) {
  double number = 0;
  const char* end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, number, std::chars_format::fixed);
  if (error != std::errc() || rest != end || !std::isfinite(number)) return false;
  value = number;
  return true;
}

std::uint32_t NumberOf(std::string_view word) {
  std::uint32_t number = 0;
  (void)ReadNumber(word, number);
  return number;
}

double DecimalOf(std::string_view word) {
  double number = 0;
  (void)ReadDecimal(word, number);
  return number;
}

}  // namespace bench
