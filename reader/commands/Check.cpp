#include <CLI/CLI.hpp>

#include "CheckFile.h"
#include "CheckRows.h"
#include "Declarations.h"
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

int Check(const Recordings& recordings) {
  Findings findings;
  // Problems begin with the file's name.
  Messages messages([&findings](const std::string& text) {
    const std::size_t colon = std::min(text.find(": "), text.size());
    findings.Add(text.substr(0, colon), text.c_str(), text.substr(std::min(colon + 2, text.size())));
  });
  Messages notes;
  const std::vector<Run> runs = recordings.Find(messages);
  FileEnds ends;
  std::size_t files = 0;
  for (const Run& run : runs) {
    for (std::size_t i = 0; i < run.files.size(); ++i) CheckFile(run.files[i], run.copies[i], ends, findings);
    files += run.files.size();
    if (run.beginIsMissing)
      notes.Note(run.files.front() + ": the begin of this run is in a file that is not given");
  }
  std::int64_t records = 0;
  for (const Run& run : runs) records += CheckRun(run, ends, findings, messages);
  Output out(Output::Kind::kText);
  out.Text() = findings.Text();
  const std::string read = Counted(runs.size(), "run") + ", " + Counted(files, "file") + ", " +
                           Counted(static_cast<std::size_t>(records), "record");
  if (findings.Empty()) {
    out.Text() += "Good: " + read + "\n";
  } else {
    out.Text() += Counted(findings.Count(), "finding") + "; what can be read: " + read + "\n";
  }
  return out.Flush() && findings.Empty() ? kGood : kFinding;
}

}  // namespace

Action DeclareCheck(CLI::App& app) {
  auto recordings = std::make_shared<Recordings>();
  AddRecordings(app, *recordings);
  app.footer(
      "Checks that files are sound, that no record is missing whose loss is not recorded, that ticks do not\n"
      "go back, and that what records refer to is there. Of each kind of finding the first row is named.\n"
      "Examples:\n"
      "  metadata check                                  every recording of this machine\n"
      "  metadata check /media/card/metadata && echo sound");
  return [recordings] { return Check(*recordings); };
}

}  // namespace reader
