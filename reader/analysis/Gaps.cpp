#include "Gaps.h"

#include <algorithm>
#include <cmath>

#include "JsonWriter.h"

Gaps::Gaps(const RunSummary& summary) {
  for (const auto& [key, source] : summary.sources) {
    const double usualMs = source.intervals.Summarize(summary.lastTick).usualMs;
    if (source.periodic && usualMs > 0) sources_.push_back({key, std::max(usualMs, 1.0)});
  }
}

void Gaps::Add(const Row& row, std::int64_t ms) {
  for (Source& source : sources_) {
    if (source.key.first == row.table && source.key.second == row.source) source.Pass(ms);
  }
}

void Gaps::Source::Pass(std::int64_t ms) {
  const auto longer = [](const Gap& a, const Gap& b) { return a.lengthMs > b.lengthMs; };
  const std::int64_t lengthMs = ms - lastMs;
  if (any && static_cast<double>(lengthMs) >= Intervals::kGapFactor * usualMs) {
    ++count;
    totalMs += lengthMs;
    longest.push_back({lastMs, lengthMs});
    std::push_heap(longest.begin(), longest.end(), longer);
  }
  if (longest.size() > kMost) {
    std::pop_heap(longest.begin(), longest.end(), longer);
    longest.pop_back();
  }
  any = true;
  lastMs = ms;
}

double Gaps::GapMs(const std::string& table, const std::string& source) const {
  const auto found = std::find_if(sources_.begin(), sources_.end(), [&](const Source& one) {
    return one.key.first == table && one.key.second == source;
  });
  return found == sources_.end() ? 0 : Intervals::kGapFactor * found->usualMs;
}

void Gaps::Write(const char* name, std::int64_t endMs, JsonWriter& json) const {
  json.Array(name);
  for (Source source : sources_) {
    if (source.key.first == "speed") continue;  // comes with those of GPS and radar
    source.Pass(endMs);
    std::sort(source.longest.begin(), source.longest.end(),
              [](const Gap& a, const Gap& b) { return a.fromMs < b.fromMs; });
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
