#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>

#include "Declarations.h"
#include "Output.h"
#include "Print.h"
#include "RunSummary.h"
#include "Utc.h"

namespace {

void PrintSources(const RunSummary& summary, std::string& out) {
  Print(out, "  %-18s %-18s %9s  %-24s  %s\n", "source", "table", "records", "first", "last");
  for (const RunSummary::Source& key : summary.order) {
    const SourceSummary& source = summary.sources.at(key);
    Print(out, "  %-18s %-18s %9lld  %-24s  %s\n", key.second.c_str(), key.first.c_str(),
          static_cast<long long>(source.records), UtcText(source.firstUtcMs).c_str(),
          UtcText(source.lastUtcMs).c_str());
  }
}

// How regularly a source reported.
void PrintIntervals(const RunSummary& summary, std::string& out) {
  for (const RunSummary::Source& key : summary.order) {
    const SourceSummary& source = summary.sources.at(key);
    const Intervals::Summary intervals = source.intervals.Summarize(summary.lastTick);
    if (!source.periodic || intervals.usualMs == 0) continue;
    const auto covered = static_cast<double>(intervals.coveredMs);
    const auto durationMs = static_cast<double>(std::max<std::int64_t>(summary.DurationMs(), 1));
    Print(out, "  %-18s every %s, %.1f %% covered, %s\n", key.second.c_str(),
          DurationText(std::llround(intervals.usualMs)).c_str(), 100 * std::min(covered / durationMs, 1.0),
          intervals.gaps == 0 ? "no gaps" : (std::to_string(intervals.gaps) + " gaps, the longest:").c_str());
    for (const Intervals::Gap& gap : intervals.longest) {
      Print(out, "  %-18s   %s from %s\n", "", DurationText(gap.lengthMs).c_str(),
            UtcText(gap.fromUtcMs).c_str());
    }
  }
}

void PrintRun(const Run& run, const RunSummary& summary, std::string& out) {
  Print(out, "Run %d: %s to %s, %s, %s%s\n", run.number, UtcText(summary.firstUtcMs).c_str(),
        UtcText(summary.lastUtcMs).c_str(), DurationText(summary.DurationMs()).c_str(),
        HowItEnded(run, summary), run.beginIsMissing ? "; its begin is in a file that is not given" : "");
  Print(out, "  ticks %lld to %lld, %lld records\n", static_cast<long long>(summary.firstTick),
        static_cast<long long>(summary.lastTick), static_cast<long long>(summary.records));
  for (const std::string& file : run.files) Print(out, "  %-18s %s\n", "file", file.c_str());
  for (const auto& [name, value] : summary.facts) Print(out, "  %-18s %s\n", name.c_str(), value.c_str());
  PrintSources(summary, out);
  PrintIntervals(summary, out);
  if (summary.losses.empty()) out += "  no recorded losses\n";
  for (const std::string& loss : summary.losses) Print(out, "  lost: %s\n", loss.c_str());
}

int Info(const Recordings& recordings) {
  Messages messages;
  Output out;
  bool first = true;
  for (const Run& run : recordings.Find(messages)) {
    if (!first) out.Text() += '\n';
    first = false;
    PrintRun(run, Summarize(run, messages), out.Text());
    out.Commit();
  }
  return out.Flush() ? messages.Status() : kFinding;
}

}  // namespace

Action DeclareInfo(CLI::App& app) {
  auto recordings = std::make_shared<Recordings>();
  AddRecordings(app, *recordings);
  app.footer(
      "Records that restate a last value are not counted as records of their source. A gap is more than\n"
      "2.5 times as long as the usual distance of a source's records.\n"
      "Examples:\n"
      "  metadata info                                   every recording of this machine\n"
      "  metadata info metadata.000007.db");
  return [recordings] { return Info(*recordings); };
}
