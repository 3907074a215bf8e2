#include <CLI/CLI.hpp>

#include "Declarations.h"
#include "Output.h"
#include "RangeOptions.h"
#include "RowFormat.h"

namespace {

struct DumpOptions {
  Recordings recordings;
  RangeOptions range;
  SourceOption source;
  FormatOption format;
};

int Dump(const DumpOptions& options) {
  Messages messages;
  const std::vector<Run> runs = options.recordings.Find(messages);
  Range range;
  if (!options.range.Find(runs, range, messages)) return kFinding;
  const auto format = MakeRowFormat(options.format.Name(), options.source.Selected());
  RunReader reader(runs, options.source.Selected(), format->WantsText(), messages);
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
  options->source.Declare(app);
  options->format.Declare(app);
  app.footer("T is " + InstantHelp() + ".\nSOURCES: " + SelectionHelp() + ".");
  return [options] { return Dump(*options); };
}
