#pragma once

#include <array>
#include <concepts>
#include <string_view>

namespace field {

constexpr unsigned int kMaxText = 255;

// A text of up to kMaxText bytes; of a longer one the beginning. It is kept in place, so that to take one
// over needs no memory.
class Text {
 public:
  Text() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): it is given what it is to hold as a string is.
  Text(const std::convertible_to<std::string_view> auto& text) {
    const std::string_view whole = text;
    size_ = static_cast<unsigned char>(whole.copy(bytes_.data(), kMaxText));
  }

  std::string_view View() const { return {bytes_.data(), size_}; }
  // NOLINTNEXTLINE(google-explicit-constructor)
  operator std::string_view() const { return View(); }

  friend bool operator==(const Text& a, const Text& b) { return a.View() == b.View(); }

 private:
  std::array<char, kMaxText> bytes_{};
  unsigned char size_ = 0;
};

}  // namespace field
