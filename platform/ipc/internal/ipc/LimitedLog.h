#pragma once

#include <chrono>
#include <utility>

#include "log/LogLine.h"

// Lines of one kind that peers can cause at will: at most one a second is written. Those held back
// are counted, and the next line says how many.
class LimitedLog {
 public:
  LimitedLog(const LogSource& source, LogAt at) : source_(source), at_(at) {}

  // Whether a line would be written now.
  bool Due() const { return Clock::now() >= next_; }

  template <typename... Parts>
  void operator()(const Parts&... parts) {
    if (!Due()) {
      ++heldBack_;
      return;
    }
    next_ = Clock::now() + std::chrono::seconds(1);
    const unsigned int heldBack = std::exchange(heldBack_, 0U);
    if (heldBack == 0) {
      source_(at_, parts...);
    } else {
      source_(at_, parts..., " (lines held back before: ", heldBack, ")");
    }
  }

 private:
  using Clock = std::chrono::steady_clock;

  const LogSource& source_;
  const LogAt at_;
  Clock::time_point next_;
  unsigned int heldBack_ = 0;
};
