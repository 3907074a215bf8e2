#include <CLI/CLI.hpp>

#include "Declarations.h"
#include "Output.h"
#include "RangeOptions.h"
#include "RowFormat.h"

namespace {

struct DumpOptions {
  Recordings recordings;
  RangeOptions range;
  std::string format = "text";
};

int Dump(const DumpOptions& options) {
  Messages messages;
  const std::vector<Run> runs = options.recordings.Find(messages);
  Range range;
  if (!options.range.Find(runs, range, messages)) return kFinding;
  const auto format = MakeRowFormat(options.format, options.range.Selected());
  RunReader reader(runs, options.range.Selected(), format->WantsText(), messages);
  reader.ShowProgress(false);
  Output out;
  out.BeforeWriting([&reader] { reader.Pause(); });
  format->Begin(out.Text());
  Row row;
  while (out.Good() && reader.Next(row)) {
    if (!range.Contains(row)) continue;
    format->Append(row, out.Text());
    out.Commit();
  }
  return out.Flush() ? messages.Status() : kFinding;
}

}  // namespace

Action DeclareDump(CLI::App& app) {
  auto options = std::make_shared<DumpOptions>();
  AddRecordings(app, options->recordings);
  options->range.Declare(app);
  app.add_option("--format", options->format, "text, csv or jsonl")
      ->check(CLI::IsMember({"text", "csv", "jsonl"}))
      ->capture_default_str();
  return [options] { return Dump(*options); };
}
