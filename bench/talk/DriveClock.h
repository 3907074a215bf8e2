#pragma once

#include <chrono>
#include <string>

namespace bench {

// The time of the drive, in seconds since its begin. It may run faster than the clock of the machine.
class DriveClock {
 public:
  using Clock = std::chrono::steady_clock;

  DriveClock() = default;
  DriveClock(Clock::time_point begin, double speed) : begin_(begin), speed_(speed), running_(true) {}

  // The payload of BenchMsg_DriveBegins.
  std::string Text() const;
  // Reads that payload. When it is malformed, returns false and changes nothing.
  bool Take(const std::string& text);

  // Whether the drive has begun. The functions below are valid from then on.
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
