#include <CLI/CLI.hpp>

#include "CsvFormat.h"
#include "Declarations.h"
#include "GeoJson.h"
#include "Gpx.h"
#include "OutputFile.h"
#include "RangeOptions.h"
#include "Subtitles.h"
#include "WriteRows.h"

namespace reader {
namespace {

struct ExportOptions {
  Recordings recordings;
  RangeOptions range;
  SourceOption source;
  std::string format;
  std::string out;
  std::optional<Instant> videoStart;
};

using Formats = std::vector<std::unique_ptr<RowFormat>>;

// An export format. Null `sources`: those of the option --source.
struct ExportFormat {
  const char* name;
  const char* sources;
  void (*make)(const ExportOptions& options, const Position& videoStart, Messages& messages,
               Formats& formats);
};

void MakeGpx(const ExportOptions& /*options*/, const Position& /*videoStart*/, Messages& messages,
             Formats& formats) {
  formats.push_back(std::make_unique<GpxWaypoints>(messages));
  formats.push_back(std::make_unique<GpxTracks>());
}

void MakeGeoJson(const ExportOptions& /*options*/, const Position& /*videoStart*/, Messages& /*messages*/,
                 Formats& formats) {
  formats.push_back(std::make_unique<GeoJson>());
}

void MakeRows(const ExportOptions& options, const Position& /*videoStart*/, Messages& /*messages*/,
              Formats& formats) {
  formats.push_back(options.format == "csv" ? MakeCsvFormat(options.source.Selected(), true)
                                            : MakeRowFormat(options.format, options.source.Selected()));
}

void MakeSubtitles(const ExportOptions& /*options*/, const Position& videoStart, Messages& /*messages*/,
                   Formats& formats) {
  formats.push_back(std::make_unique<Subtitles>(videoStart));
}

constexpr const char* kSubtitles = "srt";
constexpr ExportFormat kFormats[] = {
    {"gpx", kGpxSources, MakeGpx}, {"geojson", kGeoJsonSources, MakeGeoJson},     {"csv", nullptr, MakeRows},
    {"jsonl", nullptr, MakeRows},  {kSubtitles, kSubtitleSources, MakeSubtitles},
};

const ExportFormat* FindFormat(const std::string& name) {
  const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [&name](const ExportFormat& row) { return name == row.name; });
  return found == std::end(kFormats) ? nullptr : found;
}

std::vector<std::string> FormatNames() {
  std::vector<std::string> names;
  for (const ExportFormat& row : kFormats) names.emplace_back(row.name);
  return names;
}

int Wrong(const char* what) {
  (void)std::fprintf(stderr, "metadata: %s\n", what);
  return kUsage;
}

bool FindVideoStart(const ExportOptions& options, const std::vector<Run>& runs, Position& start,
                    Messages& messages) {
  Instant instant;
  std::string ignored;
  (void)ReadInstant("record-start", instant, ignored);
  const std::optional<Position> found = Resolve(options.videoStart.value_or(instant), runs, messages);
  if (found) start = *found;
  return found.has_value();
}

int Export(const ExportOptions& options) {
  const ExportFormat& format = *FindFormat(options.format);
  const bool isVideo = options.format == kSubtitles;
  if (options.videoStart && !isVideo) return Wrong("--video-start is for --format srt");
  if (options.source.Selected() != nullptr && format.sources != nullptr)
    return Wrong("--source is for --format csv and jsonl");

  Messages messages;
  const std::vector<Run> runs = options.recordings.Find(messages);
  Range range;
  Position videoStart;
  if (!options.range.Find(runs, range, messages)) return kFinding;
  if (isVideo && !FindVideoStart(options, runs, videoStart, messages)) return kFinding;
  Selection own;
  std::string ignored;
  if (format.sources != nullptr) (void)own.Read(format.sources, ignored);
  Formats formats;
  format.make(options, videoStart, messages, formats);
  if (runs.empty() && messages.Status() != kGood && !options.out.empty()) return kFinding;
  OutputFile file;
  if (!file.Open(options.out, messages)) return kFinding;
  (void)WriteRows(runs, range, format.sources == nullptr ? options.source.Selected() : &own, formats,
                  file.IsNamed(), file.Out(), messages);
  return file.Finish() ? messages.Status() : kFinding;
}

}  // namespace

Action DeclareExport(CLI::App& app) {
  auto options = std::make_shared<ExportOptions>();
  AddRecordings(app, options->recordings);
  app.add_option("--format", options->format, "gpx, geojson, csv, jsonl or srt")
      ->check(CLI::IsMember(FormatNames()))
      ->required();
  app.add_option("-o,--output", options->out, "the file to write [standard output]");
  options->range.Declare(app);
  options->source.Declare(app);
  AddInstant(app, "--video-start", options->videoStart,
             "where the video of the subtitles begins [record-start]");
  app.footer(
      "gpx      GPX 1.1: runs as tracks, losses of fix as segment breaks, bookmarks as waypoints\n"
      "geojson  GeoJSON (RFC 7946): a line for each stretch with a fix, a point for each bookmark\n"
      "csv, jsonl  as dump; in csv an apostrophe precedes each text that a spreadsheet would take as a "
      "formula\n"
      "srt      SubRip subtitles, one each second: speed, position, radar, active inputs, bookmarks\n" +
      InstantFooter() + "SOURCES, for csv and jsonl: " + SelectionHelp() +
      ".\n"
      "Examples:\n"
      "  metadata export --format gpx -o drive.gpx\n"
      "  metadata export --format geojson --from crash-2m --to crash+1m -o crash.geojson\n"
      "  metadata export --format srt --video-start record-start:2 -o evening-2.srt\n"
      "  metadata export --format csv metadata.000007.db | sqlite3 drive.db '.import --csv /dev/stdin "
      "drive'");
  return [options] { return Export(*options); };
}

}  // namespace reader
