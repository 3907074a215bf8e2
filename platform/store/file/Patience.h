#pragma once

#include <chrono>

namespace store {

// How long something may still take.
class Patience {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Patience(std::chrono::milliseconds most) : end_(Clock::now() + most) {}

  bool Over() const { return Clock::now() >= end_; }

  // What is bounded in another way does not count.
  void Excuse(Clock::duration time) { end_ += time; }

 private:
  Clock::time_point end_;
};

}  // namespace store
