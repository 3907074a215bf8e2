#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

namespace bench {

// The distribution of how late lines were. Its memory does not depend on their number.
class Lateness {
 public:
  void Add(std::chrono::nanoseconds late);
  bool Empty() const { return count_ == 0; }
  // "half within 0.3 ms of their time, 99 % within 1.8 ms, the last within 4.1 ms"
  std::string Text() const;

 private:
  // A place for each tenth of a millisecond below two seconds; the last one has all that are later.
  static constexpr std::chrono::microseconds kPlace{100};
  static constexpr std::size_t kPlaces = 20'000;

  std::string Within(std::uint64_t lines) const;

  std::array<std::uint64_t, kPlaces> places_{};
  std::uint64_t count_ = 0;
  std::chrono::nanoseconds latest_{0};
};

}  // namespace bench
