#include "Screen.h"

#include <algorithm>
#include <cstdio>

#include "RunOptions.h"

namespace bench {

void Screen::BeginDrive() {
  phase_ = Phase::kDrive;
  begin_ = Clock::now();
}

void Screen::EndDrive() {
  phase_ = Phase::kStop;
}

Screen::Clock::time_point Screen::WhenDue(std::chrono::milliseconds at) const {
  const std::chrono::duration<double, std::milli> wait(static_cast<double>(at.count()) / speed_);
  return begin_ + std::chrono::ceil<Clock::duration>(wait);
}

double Screen::DriveSeconds() const {
  if (at_) return std::chrono::duration<double>(*at_).count();
  return std::chrono::duration<double>(Clock::now() - begin_).count() * speed_;
}

std::chrono::milliseconds Screen::DriveTime() const {
  if (speed_ >= kMaxSpeed) return PlayedTo();
  const std::chrono::duration<double, std::milli> since = (Clock::now() - begin_) * speed_;
  return std::max(PlayedTo(), std::chrono::duration_cast<std::chrono::milliseconds>(since));
}

void Screen::GoOnFrom(std::chrono::milliseconds at) {
  begin_ += Clock::now() - WhenDue(at);
}

std::string Screen::Stamp() const {
  if (phase_ == Phase::kStart) return "   start";
  if (phase_ == Phase::kStop) return "    stop";
  char text[32];
  (void)std::snprintf(text, sizeof text, "%8.3f", DriveSeconds());
  return text;
}

// Writes whole lines at once, also into a pipe.
void Screen::Line(const std::string& text) const {
  const bool written = std::printf("%s\n", text.c_str()) >= 0 && std::fflush(stdout) == 0;
  if (!written) outputFailed_ = true;
}

}  // namespace bench
