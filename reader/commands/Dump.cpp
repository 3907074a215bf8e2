#include <CLI/CLI.hpp>

#include "Declarations.h"
#include "RangeOptions.h"
#include "WriteRows.h"

namespace reader {
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
  std::vector<std::unique_ptr<RowFormat>> formats;
  formats.push_back(MakeRowFormat(options.format.Name(), options.source.Selected()));
  Output out(options.format.OutputKind());
  const bool written = WriteRows(runs, range, options.source.Selected(), formats, false, out, messages);
  return written ? messages.Status() : kFinding;
}

}  // namespace

Action DeclareDump(CLI::App& app) {
  auto options = std::make_shared<DumpOptions>();
  AddRecordings(app, options->recordings);
  options->range.Declare(app);
  options->source.Declare(app);
  options->format.Declare(app);
  app.footer(InstantFooter() + "SOURCES: " + SelectionHelp() +
             ".\n"
             "Examples:\n"
             "  metadata dump --from record-start --to record-stop\n"
             "  metadata dump metadata.000007.db --source inputs,bookmark\n"
             "  metadata dump --format csv --source gps > gps.csv\n"
             "  metadata dump --format jsonl | jq 'select(.source==\"crash\")'");
  return [options] { return Dump(*options); };
}

}  // namespace reader
