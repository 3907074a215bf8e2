#pragma once

#include <string>

#include "Children.h"
#include "Screen.h"

namespace bench {

// The report of a run: events as they happen, problems, and a summary at the end.
class Report : public Screen {
 public:
  explicit Report(double speed) : Screen(speed) {}

  // Reports an event that is a failure.
  void Problem(const std::string& text) { Problem(Stamp(), text); }
  void Problem(const std::string& stamp, const std::string& text);

  bool Good() const { return problems_ == 0 && !OutputFailed(); }

  // Reports the end, memory and CPU time of a process. `peakMemoryKb` is 0 when it was not read while it ran.
  void SayHowItEnded(const Child& child, unsigned long peakMemoryKb) const;
  // Reports the summary. `toFullRun` is the time that the start took; empty when full run was not reached.
  void SayHowItWent(std::size_t linesPlayed, std::size_t lines, double driveSeconds,
                    const std::string& toFullRun) const;

 private:
  unsigned int problems_ = 0;
  std::string firstProblem_;
};

}  // namespace bench
