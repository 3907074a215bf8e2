#pragma once

#include <chrono>

namespace store {

// A deadline that can be extended.
class Patience {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Patience(std::chrono::milliseconds most) : end_(Clock::now() + most) {}

  bool Over() const { return Clock::now() >= end_; }

  // Extends the deadline by time spent on work that has its own bound.
  void Excuse(Clock::duration time) { end_ += time; }

 private:
  Clock::time_point end_;
};

}  // namespace store
