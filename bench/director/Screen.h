#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace bench {

// Prints one line per event, each with the time of the drive.
class Screen {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Screen(double speed) : speed_(speed) {}

  // Starts the drive: its time is 0 now.
  void BeginDrive();
  // Ends the drive: the stamp is "stop" from now on.
  void EndDrive();

  double Speed() const { return speed_; }
  bool Driving() const { return phase_ == Phase::kDrive; }
  bool Stopping() const { return phase_ == Phase::kStop; }
  Clock::time_point DriveBegin() const { return begin_; }

  // When a line of the drive is due, by the clock of the machine.
  Clock::time_point WhenDue(std::chrono::milliseconds at) const;
  // The time of the drive. It runs faster than the clock when the drive does.
  double DriveSeconds() const;
  // The same, also between two lines of a replay.
  std::chrono::milliseconds DriveTime() const;

  // A replay sets the time of the drive with each line, and tells from which time it goes on after a pause.
  void DriveIsAt(std::chrono::milliseconds at) { at_ = at; }
  std::chrono::milliseconds PlayedTo() const { return at_.value_or(std::chrono::milliseconds(0)); }
  void GoOnFrom(std::chrono::milliseconds at);

  // The time stamp for an event that happens now.
  std::string Stamp() const;
  // Prints an event with its time stamp.
  void Event(const std::string& text) const { Event(Stamp(), text); }
  void Event(const std::string& stamp, const std::string& text) const { Line(stamp + "  " + text); }
  // Prints a line without a time stamp.
  void Line(const std::string& text) const;
  // Whether writing a line failed.
  bool OutputFailed() const { return outputFailed_; }

 private:
  enum class Phase { kStart, kDrive, kStop };

  double speed_;
  Phase phase_ = Phase::kStart;
  Clock::time_point begin_;
  std::optional<std::chrono::milliseconds> at_;
  mutable bool outputFailed_ = false;
};

}  // namespace bench
