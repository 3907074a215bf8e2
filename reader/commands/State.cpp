#include <CLI/CLI.hpp>

#include "Declarations.h"
#include "Output.h"
#include "RangeOptions.h"
#include "RunReader.h"
#include "Snapshot.h"

namespace reader {
namespace {

struct StateOptions {
  Recordings recordings;
  std::optional<Instant> at;
  bool json = false;
};

int State(const StateOptions& options) {
  Messages messages;
  const std::vector<Run> runs = options.recordings.Find(messages);
  const std::optional<Position> at = Resolve(*options.at, runs, messages);
  if (!at) return kFinding;
  Snapshot snapshot(*at);
  RunReader reader(runs, nullptr, true, messages);
  reader.ShowProgress(true);
  for (Row row; reader.Next(row) && snapshot.Take(row);) {
  }
  if (snapshot.Empty()) {
    messages.Problem("nothing is recorded at or before " + options.at->said);
    return kFinding;
  }
  if (!snapshot.WithinRun()) messages.Note("nothing is recorded after " + options.at->said);
  Output out(Output::Kind::kText);
  if (options.json) {
    JsonWriter json(out.Text());
    snapshot.Write(json);
    out.Text() += '\n';
  } else {
    snapshot.Print(out.Text());
  }
  return out.Flush() ? messages.Status() : kFinding;
}

}  // namespace

Action DeclareState(CLI::App& app) {
  auto options = std::make_shared<StateOptions>();
  AddRecordings(app, options->recordings);
  AddInstant(app, "--at", options->at, "the instant")->required();
  app.add_flag("--json", options->json, "as JSON");
  app.footer(InstantFooter() +
             "Examples:\n"
             "  metadata state --at crash\n"
             "  metadata state --at bookmark:2-10s metadata.000007.db\n"
             "  metadata state --at 2024-05-01T12:00:30Z");
  return [options] { return State(*options); };
}

}  // namespace reader
