#pragma once

#include <cerrno>
#include <cstring>

namespace os {

// The result of an operation that can fail: an errno value, 0 for success.
class [[nodiscard]] Errno {
 public:
  constexpr Errno() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): `return EINVAL;`
  constexpr Errno(int value) : value_(value) {}
  // The error of the system call that has just failed.
  static Errno Last() { return errno; }

  constexpr int Value() const { return value_; }
  constexpr bool Failed() const { return value_ != 0; }
  const char* Text() const { return std::strerror(value_); }

  friend constexpr bool operator==(Errno a, Errno b) { return a.value_ == b.value_; }

 private:
  int value_ = 0;
};

}  // namespace os
