#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// The fuzzer's input, taken from the front. Past the end every byte is zero.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  bool Done() const { return rest_.empty(); }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(Take(1).append(1, '\0')[0]); }
  std::size_t Below(std::size_t end) { return Byte() % end; }
  std::uint32_t Word() {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i) word = word << 8 | Byte();
    return word;
  }
  // `size` bytes, or what is left.
  std::string Take(std::size_t size) {
    std::string taken(rest_.substr(0, size));
    rest_.remove_prefix(taken.size());
    return taken;
  }
  // The next line, without its end.
  std::string Line() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    std::string line = Take(end);
    (void)Take(1);
    return line;
  }
  // A text after its length of two bytes.
  std::string Text() {
    const std::size_t high = Byte();
    return Take(high << 8 | Byte());
  }

 private:
  std::string_view rest_;
};

// Aborts if false; the fuzzer then reports the input.
inline void Require(bool holds) {
  if (!holds) std::abort();
}
