#pragma once

#include <string>

#include "Children.h"
#include "Screen.h"

// What a run tells people: its events as they happen, its problems, and at the end how it went.
class Report : public Screen {
 public:
  explicit Report(double speed) : Screen(speed) {}

  // An event that should not be.
  void Problem(const std::string& text) { Problem(Stamp(), text); }
  void Problem(const std::string& stamp, const std::string& text);

  bool Good() const { return problems_ == 0; }

  // What a process used; `peakMemoryKb` of it is 0 when it was not read while it ran.
  void SayHowItEnded(const Child& child, unsigned long peakMemoryKb) const;
  // `toFullRun` is how long the start took, if it came so far.
  void SayHowItWent(std::size_t linesPlayed, std::size_t lines, double driveSeconds,
                    const std::string& toFullRun) const;

 private:
  unsigned int problems_ = 0;
  std::string firstProblem_;
};

// "1.0"
std::string OneDecimal(double value);
