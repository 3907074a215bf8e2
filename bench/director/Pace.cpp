#include "Pace.h"

#include <algorithm>

#include "RunOptions.h"

namespace bench {

using std::chrono::milliseconds;

namespace {

constexpr std::chrono::seconds kNewsInterval{10};

}  // namespace

Pace::Pace(Report& report, std::optional<milliseconds> length)
    : report_(report), length_(length), nextNews_(Clock::now() + kNewsInterval) {
  if (keyboard_.IsThere()) report_.Event("keys: space pauses and goes on, n plays one line");
}

void Pace::TakeKeys() {
  while (const char key = keyboard_.NextKey()) {
    if (key == ' ') paused_ ? GoOn() : Pause();
    if (key == 'n' || key == '.') Step();
  }
}

void Pace::Pause() {
  paused_ = true;
  at_ = report_.DriveTime();
  report_.Event("paused at " + HowFar());
}

// The first step pauses, too.
void Pace::Step() {
  if (!paused_) Pause();
  step_ = true;
}

void Pace::GoOn() {
  paused_ = step_ = false;
  report_.GoOnFrom(at_);
  report_.Event("goes on");
}

Pace::Clock::time_point Pace::WhenDue(milliseconds at) const {
  if (!paused_) return report_.WhenDue(at);
  return step_ ? Clock::now() : Clock::time_point::max();
}

void Pace::Played(milliseconds at, const std::string& text) {
  ++lines_;
  if (step_) {
    report_.Event(text);
    at_ = at;
    step_ = false;
  } else {
    lateness_.Add(Clock::now() - report_.WhenDue(at));
  }
  if (Clock::now() < nextNews_) return;
  report_.Event(HowFar());
  nextNews_ += kNewsInterval;
}

void Pace::End() const {
  if (report_.Speed() < kMaxSpeed && !lateness_.Empty()) report_.Event(lateness_.Text());
}

std::string Pace::HowFar() const {
  std::string text = std::to_string(lines_) + " lines";
  if (!length_ || length_->count() <= 0) return text;
  const auto percent = std::min<std::int64_t>(100, report_.PlayedTo().count() * 100 / length_->count());
  return text + ", " + std::to_string(percent) + " %";
}

}  // namespace bench
