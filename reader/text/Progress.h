#pragma once

#include <chrono>
#include <cstdint>

namespace reader {

// How far long work has come, on standard error where that is a terminal; nothing for the first second.
class Progress {
 public:
  // `beside`: whether standard output, too, may be a terminal.
  explicit Progress(bool beside);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // To be called often; costs next to nothing.
  void Tell(std::int64_t done, std::int64_t total) {
    if (--countdown_ <= 0) Show(done, total);
  }

 private:
  static constexpr int kCallsBetween = 20'000;
  void Show(std::int64_t done, std::int64_t total);

  bool shown_ = false;
  bool enabled_;
  int countdown_ = kCallsBetween;
  std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + std::chrono::seconds(1);
};

}  // namespace reader
