#include "Ratio.h"

#include <unistd.h>

#include <cstdio>
#include <vector>

namespace {

// Prints as usual, in colours only on a terminal, and keeps each benchmark's time.
class KeepingReporter : public benchmark::ConsoleReporter {
 public:
  KeepingReporter() : ConsoleReporter(isatty(STDOUT_FILENO) == 1 ? OO_ColorTabular : OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
      times_[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
  }

  void PrintRatios() const {
    for (const auto& [name, time] : times_) {
      const std::size_t slash = name.rfind("/ours");
      if (slash == std::string::npos) continue;
      const auto floor = times_.find(name.substr(0, slash) + "/floor");
      if (floor == times_.end() || floor->second <= 0) continue;
      std::printf("%s: %.2f times its floor\n", name.substr(0, slash).c_str(), time / floor->second);
    }
  }

 private:
  std::map<std::string, double> times_;
};

}  // namespace

int RunWithRatios(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  KeepingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
  return 0;
}
