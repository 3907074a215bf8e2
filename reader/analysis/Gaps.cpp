#include "Gaps.h"

#include <algorithm>
#include <cmath>

#include "JsonWriter.h"
#include "RunClock.h"
#include "RunReader.h"
#include "Tables.h"

namespace reader {
namespace {

constexpr double kGapFactor = 2.5;

}  // namespace

Gaps::Gaps(const RunSummary& summary) {
  for (const auto& [key, source] : summary.sources) {
    const double usualMs = source.intervals.UsualMs();
    if (usualMs > 0) sources_.push_back({key, std::max(usualMs, 1.0)});
  }
}

void Gaps::Add(const Row& row, std::int64_t ms) {
  for (Source& source : sources_) {
    if (source.key.first == row.table && source.key.second == row.source) source.Pass(ms, row.utcMs);
  }
}

void Gaps::Source::Pass(std::int64_t ms, std::int64_t utcMs) {
  const auto longer = [](const Gap& a, const Gap& b) { return a.lengthMs > b.lengthMs; };
  const std::int64_t lengthMs = ms - lastMs;
  if (any && static_cast<double>(lengthMs) >= kGapFactor * usualMs) {
    ++count;
    totalMs += lengthMs;
    longest.push_back({lastMs, lastUtcMs, lengthMs});
    std::push_heap(longest.begin(), longest.end(), longer);
  }
  if (longest.size() > kMost) {
    std::pop_heap(longest.begin(), longest.end(), longer);
    longest.pop_back();
  }
  any = true;
  lastMs = ms;
  lastUtcMs = utcMs;
}

double Gaps::GapMs(const std::string& table, const std::string& source) const {
  const auto found = std::find_if(sources_.begin(), sources_.end(), [&](const Source& one) {
    return one.key.first == table && one.key.second == source;
  });
  return found == sources_.end() ? 0 : kGapFactor * found->usualMs;
}

std::vector<Gaps::Source> Gaps::UpTo(std::int64_t endMs) const {
  std::vector<Source> sources = sources_;
  for (Source& source : sources) {
    source.Pass(endMs, kNoUtc);
    std::sort(source.longest.begin(), source.longest.end(),
              [](const Gap& a, const Gap& b) { return a.fromMs < b.fromMs; });
  }
  return sources;
}

void Gaps::Write(const char* name, std::int64_t endMs, JsonWriter& json) const {
  json.Array(name);
  for (const Source& source : UpTo(endMs)) {
    if (source.key.first == "speed") continue;  // derived from GPS and radar, which are listed
    json.Object().Text("source", source.key.second);
    json.Number("usualMs", std::llround(source.usualMs));
    json.Number("count", source.count);
    json.Number("totalMs", source.totalMs);
    json.Array("gaps");
    for (const Gap& gap : source.longest) {
      json.Array().Number(nullptr, gap.fromMs);
      json.Number(nullptr, gap.lengthMs);
      json.EndArray();
    }
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
}

std::vector<Gaps::Source> FindGaps(const Run& run, const RunSummary& summary, Messages& messages) {
  Gaps gaps(summary);
  const RunClock clock(summary.firstTick);
  std::string tables;
  for (const store::Table& table : store::kTables) {
    if (table.cadence == store::Cadence::kPeriodic) tables += std::string(table.name) + ",";
  }
  Selection periodic;
  std::string ignored;
  (void)periodic.Read(tables, ignored);
  RunReader reader({run}, &periodic, false, messages);
  for (Row row; reader.Next(row);) {
    if (row.event != EventKind::kRestated) gaps.Add(row, clock.Ms(row));
  }
  return gaps.UpTo(summary.endMs);
}

}  // namespace reader
