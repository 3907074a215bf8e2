#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>

#include "Comparison.h"
#include "Declarations.h"
#include "DiffJson.h"
#include "Encode.h"
#include "FindFiles.h"
#include "Output.h"
#include "Print.h"
#include "Selection.h"
#include "Utc.h"

namespace reader {
namespace {

// As of diff(1).
enum DiffStatus { kAlike = 0, kDifferent = 1, kTrouble = 2 };

struct DiffOptions {
  std::string a;
  std::string b;
  std::optional<Selection> ignored;
  bool clock = false;
  bool json = false;
  std::optional<std::int64_t> toleranceMs;
};

bool IsLiveTwice(const std::vector<Run>& a, const std::vector<Run>& b, const DiffOptions& options) {
  const auto live = [](const Run& run) { return run.live; };
  std::error_code none;
  return std::any_of(a.begin(), a.end(), live) && std::any_of(b.begin(), b.end(), live) &&
         std::filesystem::equivalent(options.a, options.b, none);
}

std::vector<Run> FindSide(const std::string& path, Messages& messages) {
  std::vector<Run> runs = FindRuns(FindFiles({path}, messages), messages);
  if (runs.empty()) messages.Problem(path + ": there is nothing to compare");
  return runs;
}

void WriteRecord(const char* name, const std::optional<ComparedRow>& row, std::string& out) {
  if (!row) return;
  Print(out, "  %s  record %lld, %s, tick %lld", name, static_cast<long long>(row->seq),
        UtcText(row->utcMs).c_str(), static_cast<long long>(row->tick));
  if (row->ticked) Print(out, ", sender tick %lu", static_cast<unsigned long>(row->senderTick));
  out += ": " + Printable(row->values) + "\n";
}

void WriteDifferences(const Comparison& comparison, std::string& out) {
  const Comparison::First& first = comparison.FirstDifference();
  out += "First difference, " + Printable(first.a ? first.a->source : first.b->source) + ": " +
         DifferenceText(first, comparison.Shift()) + "\n";
  WriteRecord("A", first.a, out);
  WriteRecord("B", first.b, out);
  for (const auto& [source, counts] : comparison.Sources()) {
    Print(out, "%-18s %s\n", Printable(source).c_str(), CountsText(counts).c_str());
  }
}

// Compares the runs of both sides in the order of time.
std::vector<Comparison> CompareRuns(const std::vector<Run>& a, const std::vector<Run>& b,
                                    const DiffOptions& options, Messages& messages) {
  std::vector<Comparison> comparisons(std::min(a.size(), b.size()));
  for (std::size_t i = 0; i < comparisons.size(); ++i) {
    comparisons[i].Compare(a[i], b[i], {options.ignored ? &*options.ignored : nullptr, options.clock},
                           {options.toleranceMs, options.clock}, messages);
  }
  return comparisons;
}

void WriteDiffText(const std::vector<Comparison>& comparisons, std::size_t runsInA, std::size_t runsInB,
                   std::string& out) {
  if (runsInA != runsInB) {
    Print(out, "A has %zu runs, B has %zu; the first ones are compared\n", runsInA, runsInB);
  }
  for (std::size_t i = 0; i < comparisons.size(); ++i) {
    const Comparison& comparison = comparisons[i];
    if (comparisons.size() > 1) Print(out, "Run %zu\n", i + 1);
    if (comparison.Differs()) WriteDifferences(comparison, out);
    const std::int64_t total = comparison.Total();
    Print(out, "%lld records are alike, %lld difference%s\n", static_cast<long long>(comparison.Pairs()),
          static_cast<long long>(total), total == 1 ? "" : "s");
  }
}

void WriteDiffJson(const std::vector<Comparison>& comparisons, std::size_t runsInA, std::size_t runsInB,
                   std::string& out) {
  JsonWriter json(out);
  json.Object().Number("runsInA", static_cast<std::int64_t>(runsInA));
  json.Number("runsInB", static_cast<std::int64_t>(runsInB));
  json.Array("runs");
  for (std::size_t i = 0; i < comparisons.size(); ++i) {
    WriteComparison(static_cast<std::int64_t>(i) + 1, comparisons[i], json);
  }
  json.EndArray();
  json.EndObject();
  out += '\n';
}

int Diff(const DiffOptions& options) {
  Messages messages;
  const std::vector<Run> a = FindSide(options.a, messages);
  const std::vector<Run> b = FindSide(options.b, messages);
  if (a.empty() || b.empty()) return kTrouble;
  if (IsLiveTwice(a, b, options)) {
    messages.Problem(options.a + ": this is the same recording twice, and it is being written");
    return kTrouble;
  }
  const std::vector<Comparison> comparisons = CompareRuns(a, b, options, messages);
  Output out(Output::Kind::kText);
  (options.json ? WriteDiffJson : WriteDiffText)(comparisons, a.size(), b.size(), out.Text());
  const bool alike =
      a.size() == b.size() && std::none_of(comparisons.begin(), comparisons.end(),
                                           [](const Comparison& any) { return any.Differs(); });
  if (!out.Flush() || messages.Status() != kGood) return kTrouble;
  return alike ? kAlike : kDifferent;
}

}  // namespace

Action DeclareDiff(CLI::App& app) {
  auto options = std::make_shared<DiffOptions>();
  app.add_option("A", options->a, "a recording, or a directory with recordings")->required();
  app.add_option("B", options->b, "the other one")->required();
  const auto ignore = [options](const std::string& text) {
    std::string error;
    if (!options->ignored.emplace().Read(text, error)) throw CLI::ValidationError(error);
  };
  app.add_option_function<std::string>("--ignore", ignore, "not these, separated by commas")
      ->type_name("SOURCES");
  app.add_flag("--clock", options->clock, "compare UTC and the records of the clock, too");
  app.add_option("--tolerance", options->toleranceMs, "how far arrivals of events may differ; default: any")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{1'000'000'000}));
  app.add_flag("--json", options->json, "as JSON");
  app.footer(
      "Compares values, order and differences of ticks, source by source. A constant difference of all "
      "ticks\n"
      "is none. Restated records are not compared.\n"
      "Exit status: 0 alike, 1 different, 2 trouble.\n"
      "SOURCES: " +
      SelectionHelp() +
      ".\n"
      "Examples:\n"
      "  metadata diff front/metadata.000007.db rear/metadata.000003.db --ignore device,store,previous-run\n"
      "  metadata diff first second --tolerance 50");
  return [options] { return Diff(*options); };
}

}  // namespace reader
