#pragma once

#include <chrono>
#include <string>

// What people read while a drive runs: one line an event, each with the drive's time.
class Screen {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Screen(double speed) : speed_(speed) {}

  // The drive begins: its time is 0 now.
  void BeginDrive();
  // From now on "stop" stands in place of the time.
  void EndDrive();

  // When a line of the drive is due.
  Clock::time_point WhenDue(std::chrono::milliseconds at) const;
  // The drive's time, its speed taken into account.
  double DriveSeconds() const;

  // What stands before an event that happens now.
  std::string Stamp() const;
  // An event, with its stamp.
  void Event(const std::string& text) const { Event(Stamp(), text); }
  void Event(const std::string& stamp, const std::string& text) const { Line(stamp + "  " + text); }
  // A line without a time.
  void Line(const std::string& text) const;

 private:
  enum class Phase { kStart, kDrive, kStop };

  double speed_;
  Phase phase_ = Phase::kStart;
  Clock::time_point begin_;
};
