#pragma once

#include <cstdint>
#include <utility>

#include "log/LogLine.h"
#include "os/MonotonicClock.h"

namespace ipc {

// Log lines that peers can cause at will. Writes at most one a second and counts the others; the next line
// reports the count.
class LimitedLog {
 public:
  LimitedLog(const LogSource& source, LogAt at) : source_(source), at_(at) {}

  // Whether a line would be written now.
  bool Due() const { return os::MonotonicMs() >= nextMs_; }

  template <typename... Parts>
  void operator()(const Parts&... parts) {
    if (!Due()) {
      ++heldBack_;
      return;
    }
    nextMs_ = os::MonotonicMs() + 1000;
    const unsigned int heldBack = std::exchange(heldBack_, 0U);
    if (heldBack == 0) {
      source_(at_, parts...);
    } else {
      source_(at_, parts..., " (lines held back before: ", heldBack, ")");
    }
  }

 private:
  const LogSource& source_;
  const LogAt at_;
  std::int64_t nextMs_ = 0;
  unsigned int heldBack_ = 0;
};

}  // namespace ipc
