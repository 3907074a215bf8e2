#include <CLI/CLI.hpp>
#include <cmath>
#include <memory>

#include "Declarations.h"
#include "Encode.h"
#include "Print.h"
#include "PrintRuns.h"
#include "RangeOptions.h"
#include "RunJson.h"
#include "Utc.h"

namespace reader {
namespace {

struct GapsOptions {
  Recordings recordings;
  SourceOption source;
  double longerSeconds = 0;
  bool json = false;

  std::int64_t LeastMs() const { return std::llround(longerSeconds * 1000); }
};

std::vector<Gaps::Source> SelectedGaps(const Run& run, const RunSummary& summary, const GapsOptions& options,
                                       Messages& messages) {
  std::vector<Gaps::Source> sources = FindGaps(run, summary, messages);
  const Selection* selection = options.source.Selected();
  std::erase_if(sources, [selection](const Gaps::Source& source) {
    return selection != nullptr && !selection->Selects(source.key.first, source.key.second);
  });
  return sources;
}

void PrintRun(const Run& run, const RunSummary& summary, const std::vector<Gaps::Source>& sources,
              std::int64_t leastMs, std::string& out) {
  for (const Gaps::Source& source : sources) {
    for (const Gaps::Gap& gap : source.longest) {
      if (gap.lengthMs < leastMs) continue;
      Print(out, "%3d  %-18s %s  %s  %12.3f s  usually %s\n", run.number,
            Printable(source.key.second).c_str(), UtcText(gap.fromUtcMs).c_str(),
            UtcText(gap.fromUtcMs == kNoUtc ? kNoUtc : gap.fromUtcMs + gap.lengthMs).c_str(),
            static_cast<double>(gap.lengthMs) / 1000, DurationText(std::llround(source.usualMs)).c_str());
    }
    const auto more = source.count - static_cast<std::int64_t>(source.longest.size());
    if (more > 0)
      Print(out, "%3d  %-18s and %lld shorter gaps\n", run.number, Printable(source.key.second).c_str(),
            static_cast<long long>(more));
  }
  for (const Loss& loss : summary.losses) Print(out, "%3d  lost: %s\n", run.number, LossText(loss).c_str());
}

int ListGaps(const GapsOptions& options) {
  const auto text = [&options](const Run& run, Messages& messages, std::string& out) {
    const RunSummary summary = Summarize(run, messages);
    PrintRun(run, summary, SelectedGaps(run, summary, options, messages), options.LeastMs(), out);
  };
  const auto json = [&options](const Run& run, Messages& messages, JsonWriter& writer) {
    const RunSummary summary = Summarize(run, messages);
    writer.Object().Number("run", run.number);
    WriteGaps(SelectedGaps(run, summary, options, messages), options.LeastMs(), writer);
    WriteLosses(summary, writer);
    writer.EndObject();
  };
  return PrintRuns(options.recordings, options.json, text, json);
}

}  // namespace

Action DeclareGaps(CLI::App& app) {
  auto options = std::make_shared<GapsOptions>();
  AddRecordings(app, options->recordings);
  options->source.Declare(app);
  app.add_option("--longer", options->longerSeconds, "only gaps of at least this length")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.0, 1e9));
  app.add_flag("--json", options->json, "as JSON");
  app.footer(
      "A gap is at least 2.5 times as long as the usual distance of the records of a source that reports at\n"
      "regular times. Of each source the 500 longest gaps are listed, in the order of time. Recorded losses\n"
      "follow.\n"
      "SOURCES: " +
      SelectionHelp() +
      ".\n"
      "Examples:\n"
      "  metadata gaps --longer 10\n"
      "  metadata gaps --source gps --json metadata.000007.db");
  return [options] { return ListGaps(*options); };
}

}  // namespace reader
