#pragma once

#include <chrono>
#include <string>

namespace bench {

// The time of the drive, in seconds since its begin. A drive may run faster than the clock.
class DriveClock {
 public:
  using Clock = std::chrono::steady_clock;

  DriveClock() = default;
  DriveClock(Clock::time_point begin, double speed) : begin_(begin), speed_(speed), running_(true) {}

  // The payload of BenchMsg_DriveBegins.
  std::string Text() const;
  // Takes the begin from such a payload. False, and nothing changed, when it is malformed.
  bool Take(const std::string& text);

  // Whether the drive has begun. The others are valid from then on.
  bool Running() const { return running_; }
  Clock::time_point Begin() const { return begin_; }
  double Seconds() const { return std::chrono::duration<double>(Clock::now() - begin_).count() * speed_; }
  double Speed() const { return speed_; }

 private:
  Clock::time_point begin_;
  double speed_ = 1;
  bool running_ = false;
};

}  // namespace bench
