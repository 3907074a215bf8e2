#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <string_view>

#include "ipc/IpcMessage.h"

namespace field {

constexpr unsigned int kMaxText = 255;

// Bytes to skip for a text or list of that stated length: at most the length of a payload.
constexpr std::size_t SkippedBytes(std::size_t told) {
  return std::min(told, IpcMessage::kMaxPayload);
}

// A text of at most kMaxText bytes; cuts a longer one. Stored inside the object: copying allocates nothing.
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
