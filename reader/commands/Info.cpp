#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>

#include "Declarations.h"
#include "Encode.h"
#include "Gaps.h"
#include "Print.h"
#include "PrintRuns.h"
#include "RunJson.h"
#include "RunSummary.h"
#include "Utc.h"

namespace reader {
namespace {

void PrintSources(const RunSummary& summary, std::string& out) {
  Print(out, "  %-18s %-18s %9s  %-24s  %s\n", "source", "table", "records", "first", "last");
  for (const RunSummary::Source& key : summary.order) {
    const SourceSummary& source = summary.sources.at(key);
    Print(out, "  %-18s %-18s %9lld  %-24s  %s\n", Printable(key.second).c_str(),
          Printable(key.first).c_str(), static_cast<long long>(source.records),
          UtcText(source.firstUtcMs).c_str(), UtcText(source.lastUtcMs).c_str());
  }
}

// Prints a source's usual interval, coverage and longest gaps.
void PrintGaps(const RunSummary& summary, const Gaps::Source& source, std::string& out) {
  constexpr std::size_t kShown = 3;
  const auto durationMs = static_cast<double>(std::max<std::int64_t>(summary.DurationMs(), 1));
  const double coveredMs = durationMs - static_cast<double>(source.totalMs) + source.usualMs;
  Print(out, "  %-18s every %s, %.1f %% covered, %s\n", Printable(source.key.second).c_str(),
        DurationText(std::llround(source.usualMs)).c_str(),
        100 * std::clamp(coveredMs / durationMs, 0.0, 1.0),
        source.count == 0 ? "no gaps" : (std::to_string(source.count) + " gaps, the longest:").c_str());
  std::vector<Gaps::Gap> longest = source.longest;
  std::stable_sort(longest.begin(), longest.end(),
                   [](const Gaps::Gap& a, const Gaps::Gap& b) { return a.lengthMs > b.lengthMs; });
  longest.resize(std::min(longest.size(), kShown));
  for (const Gaps::Gap& gap : longest) {
    Print(out, "  %-18s   %.3f s from %s\n", "", static_cast<double>(gap.lengthMs) / 1000,
          UtcText(gap.fromUtcMs).c_str());
  }
}

void PrintDriven(const Driven& driven, std::string& out) {
  if (!driven.Any()) return;
  Print(out, "  %-18s %.1f km, by GPS", "driven", driven.Metres() / 1000);
  if (driven.Leaps() > 0) {
    Print(out, "; leaps left out: %lld, %.1f km together", static_cast<long long>(driven.Leaps()),
          driven.LeapMetres() / 1000);
  }
  out += '\n';
}

void PrintRun(const Run& run, const RunSummary& summary, const std::vector<Gaps::Source>& gaps,
              std::string& out) {
  Print(out, "Run %d: %s to %s, %s, %s%s\n", run.number, UtcText(summary.firstUtcMs).c_str(),
        UtcText(summary.lastUtcMs).c_str(), DurationText(summary.DurationMs()).c_str(),
        HowItEnded(run, summary), run.beginIsMissing ? "; its begin is in a file that is not given" : "");
  Print(out, "  ticks %lld to %lld, %lld records\n", static_cast<long long>(summary.firstTick),
        static_cast<long long>(summary.lastTick), static_cast<long long>(summary.records));
  for (const std::string& file : run.files) Print(out, "  %-18s %s\n", "file", Printable(file).c_str());
  for (const auto& [name, value] : summary.facts) Print(out, "  %-18s %s\n", name.c_str(), value.c_str());
  PrintDriven(summary.driven, out);
  PrintSources(summary, out);
  for (const Gaps::Source& source : gaps) PrintGaps(summary, source, out);
  if (summary.losses.empty()) out += "  no recorded losses\n";
  for (const Loss& loss : summary.losses) Print(out, "  lost: %s\n", Printable(LossText(loss)).c_str());
}

struct InfoOptions {
  Recordings recordings;
  bool json = false;
};

int Info(const InfoOptions& options) {
  bool first = true;
  const auto text = [&first](const Run& run, Messages& messages, std::string& out) {
    const RunSummary summary = Summarize(run, messages);
    if (!first) out += '\n';
    first = false;
    PrintRun(run, summary, FindGaps(run, summary, messages), out);
  };
  const auto json = [](const Run& run, Messages& messages, JsonWriter& writer) {
    const RunSummary summary = Summarize(run, messages);
    WriteRun(run, summary, FindGaps(run, summary, messages), writer);
  };
  return PrintRuns(options.recordings, options.json, text, json);
}

}  // namespace

Action DeclareInfo(CLI::App& app) {
  auto options = std::make_shared<InfoOptions>();
  AddRecordings(app, options->recordings);
  app.add_flag("--json", options->json, "as JSON");
  app.footer(
      "Records that restate a last value are not counted as records of their source. A gap is at least\n"
      "2.5 times as long as the usual distance of a source's records; \"metadata gaps\" lists all.\n"
      "Examples:\n"
      "  metadata info                                   every recording of this machine\n"
      "  metadata info metadata.000007.db");
  return [options] { return Info(*options); };
}

}  // namespace reader
