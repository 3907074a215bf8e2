#pragma once

#include <array>
#include <chrono>

// Bounds what one place in the sources writes to the log: kBurst lines at once, then kPerSecond, so that
// a peer that causes a line with each message does not fill the log.
class LogFlood {
 public:
  static constexpr double kBurst = 2000;
  static constexpr double kPerSecond = 10;

  // Whether the place, a name and a line, may write one more.
  bool Admits(const char* name, unsigned int line);

 private:
  using Clock = std::chrono::steady_clock;

  // Places that fall into the same row take it from each other, each with a burst of its own.
  struct Row {
    const char* name = nullptr;
    unsigned int line = 0;
    double left = 0;
    Clock::time_point at;
  };
  std::array<Row, 64> rows_;
};
