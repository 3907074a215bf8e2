#pragma once

#include <string>

#include "Children.h"
#include "Screen.h"

namespace bench {

// Prints events and problems as they happen, and a summary at the end.
class Report : public Screen {
 public:
  explicit Report(double speed) : Screen(speed) {}

  // Prints an event and counts it as a failure.
  void Problem(const std::string& text) { Problem(Stamp(), text); }
  void Problem(const std::string& stamp, const std::string& text);

  bool Good() const { return problems_ == 0 && !OutputFailed(); }

  // Prints how a process ended, its memory and CPU time. `peakMemoryKb` is 0 when it is unknown.
  void SayHowItEnded(const Child& child, unsigned long peakMemoryKb) const;
  // Prints the summary. `toFullRun` is the duration of the start; empty when full run was not reached.
  void SayHowItWent(std::size_t linesPlayed, std::size_t lines, double driveSeconds,
                    const std::string& toFullRun) const;

 private:
  unsigned int problems_ = 0;
  std::string firstProblem_;
};

}  // namespace bench
