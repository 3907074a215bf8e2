#include <CLI/CLI.hpp>

#include "Declarations.h"
#include "DriveData.h"
#include "JsonWriter.h"
#include "OutputFile.h"
#include "RangeOptions.h"
#include "ReportPage.h"
#include "RunReader.h"
#include "VideoOption.h"

namespace reader {
namespace {

struct ReportOptions {
  Recordings recordings;
  RangeOptions range;
  SourceOption source;
  VideoOption video;
  std::string out;
};

// Escapes "<", so that data cannot end the script element that holds it.
void AppendEmbedded(const std::string& json, std::string& out) {
  for (const char c : json) {
    if (c == '<') {
      out += "\\u003c";
    } else {
      out += c;
    }
  }
}

// Writes the runs that have something to show.
class RunsWriter {
 public:
  RunsWriter(const ReportOptions& options, const Range& range, const Videos& videos, Messages& messages)
      : options_(options), range_(range), videos_(videos), messages_(messages) {}

  void Append(const Run& run, std::string& out) {
    const Selection* selection = options_.source.Selected();
    const bool anyTime = !range_.from && !range_.to;
    const RunSummary summary = Summarize(run, messages_);
    DriveData drive(run, summary, {anyTime && selection == nullptr, selection == nullptr, bookmarks_});
    drive.Show(videos_);
    RunReader reader({run}, selection, /*text=*/true, messages_);
    reader.ShowProgress(true);
    for (Row row; reader.Next(row);) {
      if (range_.Contains(row)) {
        drive.Add(row);
      } else {
        drive.Skip(row);
      }
    }
    bookmarks_ = drive.Bookmarks();
    if (!anyTime && !drive.Any()) return;
    std::string text;
    JsonWriter json(text);
    drive.Write(json);
    out += first_ ? "" : ",\n";
    AppendEmbedded(text, out);
    first_ = false;
  }

 private:
  const ReportOptions& options_;
  const Range& range_;
  const Videos& videos_;
  Messages& messages_;
  int bookmarks_ = 0;
  bool first_ = true;
};

int Report(const ReportOptions& options) {
  Messages messages;
  const std::vector<Run> runs = options.recordings.Find(messages);
  Range range;
  if (!options.range.Find(runs, range, messages)) return kFinding;
  const std::optional<Videos> videos = options.video.Find(options.out, messages);
  if (!videos) return kFinding;
  if (options.video.Any() && runs.size() != 1) {
    messages.Problem("--video goes with one run; these files hold " + std::to_string(runs.size()));
    return kFinding;
  }
  if (runs.empty() && messages.Status() != kGood && !options.out.empty()) return kFinding;
  OutputFile file;
  if (!file.Open(options.out, messages)) return kFinding;
  std::string& out = file.Out().Text();
  out += ReportHead(options.video.Any());
  out += '[';
  RunsWriter writer(options, range, *videos, messages);
  for (const Run& run : runs) {
    writer.Append(run, out);
    file.Out().Commit();
  }
  out += ']';
  out += ReportTail();
  return file.Finish() ? messages.Status() : kFinding;
}

}  // namespace

Action DeclareReport(CLI::App& app) {
  auto options = std::make_shared<ReportOptions>();
  AddRecordings(app, options->recordings);
  options->range.Declare(app);
  options->source.Declare(app);
  options->video.Declare(app);
  app.add_option("-o,--output", options->out, "the page to write [standard output]");
  app.footer(
      "The page is one file that opens offline and prints well. It shows each run: the track, speed,\n"
      "temperatures, inputs, recordings, streams and so on over one time axis, and what is missing.\n" +
      InstantFooter() + "SOURCES: " + SelectionHelp() +
      ".\n"
      "Examples:\n"
      "  metadata report -o drive.html\n"
      "  metadata report -o drive.html metadata.000007.db\n"
      "  metadata report -o crash.html --from crash-2m --to crash+1m\n"
      "  metadata report -o drive.html --video front.mp4 --video rear.mp4=0.5 metadata.000007.db");
  return [options] { return Report(*options); };
}

}  // namespace reader
