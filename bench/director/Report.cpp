#include "Report.h"

#include "Numbers.h"

namespace bench {

namespace {

double Ms(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

}  // namespace

void Report::Problem(const std::string& stamp, const std::string& text) {
  Event(stamp, "FAILED: " + text);
  if (problems_++ == 0) firstProblem_ = text;
}

void Report::SayHowItEnded(const Child& child, unsigned long peakMemoryKb) const {
  const double user = Ms(child.usage.ru_utime);
  const double system = Ms(child.usage.ru_stime);
  const unsigned long peakKb =
      peakMemoryKb != 0 ? peakMemoryKb : static_cast<unsigned long>(child.usage.ru_maxrss);
  Line(child.name + ": " + child.HowItEnded() + ", peak memory " + std::to_string(peakKb) + " kB, CPU " +
       Milliseconds(user + system) + " (user " + Milliseconds(user) + ", system " + Milliseconds(system) +
       ")");
}

void Report::SayHowItWent(std::size_t linesPlayed, std::size_t lines, double driveSeconds,
                          const std::string& toFullRun) const {
  std::string text = Good() ? "Good: " : "FAILED: ";
  text += std::to_string(linesPlayed) + " of " + std::to_string(lines) + " lines in " +
          OneDecimal(driveSeconds) + " s of the drive";
  if (!toFullRun.empty()) text += "; start to full run " + toFullRun;
  if (!Good()) text += "; problems: " + std::to_string(problems_) + ", the first: " + firstProblem_;
  Line(text);
}

}  // namespace bench
