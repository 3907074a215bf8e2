#include "Ratio.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Stores each benchmark's time in the benchmark's unit; prints only the final table.
class KeepingReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
      times_[run.run_name.function_name] = run.GetAdjustedRealTime();
      unit_ = benchmark::GetTimeUnitString(run.time_unit);
    }
  }

  void PrintTable() const {
    double worst = 0;
    std::printf("%-20s %9s %9s %6s\n", unit_, "floor", "ours", "ratio");
    for (const auto& [name, time] : times_) {
      const std::size_t slash = name.rfind("/ours");
      if (slash == std::string::npos) continue;
      const auto floor = times_.find(name.substr(0, slash) + "/floor");
      if (floor == times_.end() || floor->second <= 0) continue;
      const double ratio = time / floor->second;
      worst = std::max(worst, ratio);
      std::printf("%-20s %9.1f %9.1f %6.2f\n", name.substr(0, slash).c_str(), floor->second, time, ratio);
    }
    std::printf("The highest ratio: %.2f\n", worst);
  }

 private:
  std::map<std::string, double> times_;
  const char* unit_ = "";
};

}  // namespace

int RunWithRatios(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  KeepingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintTable();
  return 0;
}
