#include "RunSummary.h"

#include <algorithm>
#include <array>

#include "Encode.h"
#include "Freshness.h"
#include "RunClock.h"
#include "RunReader.h"

namespace reader {
namespace {

constexpr std::array<std::string_view, 7> kFacts{"serial",  "mac",        "system_info", "version",
                                                 "vehicle", "department", "officer"};
constexpr std::array<std::string_view, 3> kVersions{"software", "sqlite", "user_version"};

template <typename Names>
bool Contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The values of the fields from index `first` on.
std::string ValuesOf(const Row& row, std::size_t first) {
  std::string text;
  for (const Field& field : row.fields.subspan(std::min(first, row.fields.size()))) {
    if (!text.empty()) text += ", ";
    if (field.isText) {
      AppendPrintable(field.text, text);
    } else {
      AppendNumber(field.number, text);
    }
  }
  return text;
}

void SetFact(const std::string& name, const std::string& value, RunSummary& summary) {
  for (auto& fact : summary.facts) {
    if (fact.first != name) continue;
    fact.second = value;
    return;
  }
  summary.facts.emplace_back(name, value);
}

void TakeFact(const Row& row, RunSummary& summary) {
  if (row.table == "configuration") {
    const std::string_view name = row.Text("name");
    if (!Contains(kVersions, name)) return;
    SetFact(name == "user_version" ? "schema" : "store " + std::string(name), ValuesOf(row, 1), summary);
  } else if (row.table == "version") {
    SetFact("version " + std::to_string(row.Number("component")), ValuesOf(row, 1), summary);
  } else if (Contains(kFacts, row.table)) {
    std::string name(row.table);
    std::replace(name.begin(), name.end(), '_', ' ');
    SetFact(name, ValuesOf(row, 0), summary);
  }
}

void TakeSource(const Row& row, RunSummary& summary) {
  const RunSummary::Source key(row.table, row.source);
  const auto [place, isNew] = summary.sources.try_emplace(key);
  SourceSummary& source = place->second;
  if (isNew) {
    summary.order.push_back(key);
    source.firstUtcMs = row.utcMs;
    source.periodic = IsPeriodic(row);
  }
  ++source.records;
  source.lastUtcMs = row.utcMs;
  if (source.periodic) source.intervals.Add(row.tick);
}

void TakeLoss(const Row& row, RunSummary& summary) {
  const std::int64_t count = row.Number("count");
  summary.lost = WithinCount(summary.lost + WithinCount(count));
  summary.losses.push_back(
      {count, std::string(row.Text("lost_table")), row.Number("from_tick"), row.Number("to_tick")});
}

}  // namespace

std::string LossText(const Loss& loss) {
  return std::to_string(loss.count) + " records of " + loss.table + " from tick " +
         std::to_string(loss.fromTick) + " to " + std::to_string(loss.toTick);
}

const char* HowItEnded(const Run& run, const RunSummary& summary) {
  if (summary.cleanEnd) return "clean end";
  if (summary.isCopy) return "a copy of a stretch";
  if (run.live) return "being recorded";
  return "cut off";
}

RunSummary Summarize(const Run& run, Messages& messages) {
  RunSummary summary;
  TrackFollower follower;
  RunReader reader({run}, nullptr, false, messages);
  reader.ShowProgress(true);
  for (Row row; reader.Next(row);) {
    if (summary.records++ == 0) {
      summary.firstTick = row.tick;
      summary.firstUtcMs = row.utcMs;
    }
    summary.lastTick = row.tick;
    summary.endMs = std::max(summary.endMs, RunClock(summary.firstTick).Ms(row));
    summary.lastUtcMs = row.utcMs;
    summary.cleanEnd = row.table == "run_end";
    summary.isCopy = summary.isCopy || row.table == "copy";
    if (row.table == "loss") TakeLoss(row, summary);
    TakeFact(row, summary);
    summary.driven.Add(follower.Take(row), follower, EventTick(row));
    if (row.event != EventKind::kRestated) TakeSource(row, summary);
  }
  return summary;
}

}  // namespace reader
