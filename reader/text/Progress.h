#pragma once

#include <chrono>
#include <cstdint>

namespace reader {

// Shows the progress of long work on standard error, if that is a terminal. Shows nothing in the first
// second.
class Progress {
 public:
  // `beside`: show progress even if standard output is a terminal.
  explicit Progress(bool beside);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Cheap enough to call for every record.
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
