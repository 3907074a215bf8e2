#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <string_view>

#include "ipc/IpcMessage.h"

namespace field {

constexpr unsigned int kMaxText = 255;

// Bytes to skip for a text or list that is told to have that many: no more than a payload may have.
constexpr std::size_t SkippedBytes(std::size_t told) {
  return std::min(told, IpcMessage::kMaxPayload);
}

// A text of up to kMaxText bytes; of a longer one the beginning. It is kept in place: copying one allocates
// nothing.
class Text {
 public:
  Text() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): assigned like a string.
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
