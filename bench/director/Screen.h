#pragma once

#include <chrono>
#include <string>

namespace bench {

// The lines that people read while a drive runs: one an event, each with the drive's time.
class Screen {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Screen(double speed) : speed_(speed) {}

  // The drive begins: its time is 0 now.
  void BeginDrive();
  // The drive is over: the stamp is "stop" from now on.
  void EndDrive();

  bool Driving() const { return phase_ == Phase::kDrive; }
  bool Stopping() const { return phase_ == Phase::kStop; }
  Clock::time_point DriveBegin() const { return begin_; }

  // When a line of the drive is due.
  Clock::time_point WhenDue(std::chrono::milliseconds at) const;
  // The drive's time, its speed taken into account.
  double DriveSeconds() const;

  // The stamp of an event that happens now.
  std::string Stamp() const;
  // An event, with its stamp.
  void Event(const std::string& text) const { Event(Stamp(), text); }
  void Event(const std::string& stamp, const std::string& text) const { Line(stamp + "  " + text); }
  // A line without a time.
  void Line(const std::string& text) const;
  // Whether a line could not be written.
  bool OutputFailed() const { return outputFailed_; }

 private:
  enum class Phase { kStart, kDrive, kStop };

  double speed_;
  Phase phase_ = Phase::kStart;
  Clock::time_point begin_;
  mutable bool outputFailed_ = false;
};

}  // namespace bench
