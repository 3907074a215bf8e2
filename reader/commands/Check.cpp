#include <CLI/CLI.hpp>

#include "CheckFile.h"
#include "CheckRows.h"
#include "Declarations.h"
#include "JsonWriter.h"
#include "Output.h"
#include "Print.h"
#include "RunReader.h"

namespace reader {
namespace {

std::int64_t CheckRun(const Run& run, const FileEnds& ends, Findings& findings, Messages& messages) {
  CheckRows rows(ends, findings);
  RunReader reader({run}, nullptr, false, messages);
  reader.ShowProgress(true);
  std::int64_t records = 0;
  for (Row row; reader.Next(row); ++records) rows.Take(row, reader.File());
  rows.End();
  return records;
}

std::string Counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

struct CheckOptions {
  Recordings recordings;
  bool json = false;
};

struct Counts {
  std::size_t runs = 0;
  std::size_t files = 0;
  std::int64_t records = 0;
};

void WriteFindings(const Findings& findings, const Counts& counts, std::string& out) {
  out += findings.Text();
  const std::string read = Counted(counts.runs, "run") + ", " + Counted(counts.files, "file") + ", " +
                           Counted(static_cast<std::size_t>(counts.records), "record");
  out += findings.Empty() ? "Good: " : Counted(findings.Count(), "finding") + "; what can be read: ";
  out += read + "\n";
}

void WriteFindingsJson(const Findings& findings, const Counts& counts, std::string& out) {
  JsonWriter json(out);
  json.Object().Flag("good", findings.Empty());
  json.Number("runs", static_cast<std::int64_t>(counts.runs));
  json.Number("files", static_cast<std::int64_t>(counts.files));
  json.Number("records", counts.records);
  json.Array("findings");
  for (const Findings::Finding& finding : findings.All()) {
    json.Object().Text("where", finding.where);
    json.Text("text", finding.text);
    json.Number("more", finding.more);
    json.EndObject();
  }
  json.EndLine();
}

int Check(const CheckOptions& options) {
  Findings findings;
  // The text of a problem begins with the file name.
  Messages messages([&findings](const std::string& text) {
    const std::size_t colon = std::min(text.find(": "), text.size());
    findings.Add(text.substr(0, colon), text.c_str(), text.substr(std::min(colon + 2, text.size())));
  });
  Messages notes;
  const std::vector<Run> runs = options.recordings.Find(messages);
  FileEnds ends;
  Counts counts{runs.size(), 0, 0};
  for (const Run& run : runs) {
    for (std::size_t i = 0; i < run.files.size(); ++i) CheckFile(run.files[i], run.copies[i], ends, findings);
    counts.files += run.files.size();
    if (run.beginIsMissing)
      notes.Note(run.files.front() + ": the begin of this run is in a file that is not given");
  }
  for (const Run& run : runs) counts.records += CheckRun(run, ends, findings, messages);
  Output out(Output::Kind::kText);
  (options.json ? WriteFindingsJson : WriteFindings)(findings, counts, out.Text());
  return out.Flush() && findings.Empty() ? kGood : kFinding;
}

}  // namespace

Action DeclareCheck(CLI::App& app) {
  auto options = std::make_shared<CheckOptions>();
  AddRecordings(app, options->recordings);
  app.add_flag("--json", options->json, "as JSON");
  app.footer(
      "Checks that files are sound, that no record is missing whose loss is not recorded, that ticks do not\n"
      "go back, and that what records refer to is there. Of each kind of finding the first row is named.\n"
      "Examples:\n"
      "  metadata check                                  every recording of this machine\n"
      "  metadata check /media/card/metadata && echo sound");
  return [options] { return Check(*options); };
}

}  // namespace reader
