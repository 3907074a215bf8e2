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

  // Places that fall into the same row share it: a burst for each of them in turn would know no bound.
  struct Row {
    double left = kBurst;
    Clock::time_point at;
  };
  std::array<Row, 64> rows_;
};
