#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "Keyboard.h"
#include "Lateness.h"
#include "Report.h"

namespace bench {

// When the lines of a replay are due. Keys pause it and let it go on (space), or play one line (n or a dot).
// Prints what the keys do, the lines that they play, and every ten seconds how far the replay is.
class Pace {
 public:
  using Clock = Screen::Clock;

  // `length`: of the whole replay, if known.
  Pace(Report& report, std::optional<std::chrono::milliseconds> length);

  void TakeKeys();
  // When a line is due. It is never due while the replay is paused.
  Clock::time_point WhenDue(std::chrono::milliseconds at) const;
  // MetadataMgr has taken a line. `text` says which.
  void Played(std::chrono::milliseconds at, const std::string& text);
  // Prints how late the lines were, unless each was due at once.
  void End() const;

 private:
  void Pause();
  void Step();
  void GoOn();
  std::string HowFar() const;

  Report& report_;
  const std::optional<std::chrono::milliseconds> length_;
  const Keyboard keyboard_;
  bool paused_ = false;
  bool step_ = false;                // the next line is due
  std::chrono::milliseconds at_{0};  // the drive's time, while paused
  std::size_t lines_ = 0;
  Lateness lateness_;
  Clock::time_point nextNews_;
};

}  // namespace bench
