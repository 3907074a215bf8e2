#include "RunJson.h"

#include <cmath>

#include "Utc.h"

namespace reader {
namespace {

void WriteSources(const RunSummary& summary, JsonWriter& json) {
  json.Array("sources");
  for (const RunSummary::Source& key : summary.order) {
    const SourceSummary& source = summary.sources.at(key);
    json.Object().Text("table", key.first);
    json.Text("source", key.second);
    json.Number("records", source.records);
    WriteTime("first", source.firstUtcMs, json);
    WriteTime("last", source.lastUtcMs, json);
    json.EndObject();
  }
  json.EndArray();
}

void WriteDriven(const Driven& driven, JsonWriter& json) {
  json.Object("driven").Decimal("metres", driven.Metres());
  json.Number("leaps", driven.Leaps());
  json.Decimal("leapMetres", driven.LeapMetres());
  json.EndObject();
}

}  // namespace

void WriteTime(const char* name, std::int64_t utcMs, JsonWriter& json) {
  if (utcMs == kNoUtc) {
    json.Null(name);
  } else {
    json.Text(name, UtcText(utcMs));
  }
}

void WriteGaps(const std::vector<Gaps::Source>& sources, std::int64_t leastMs, JsonWriter& json) {
  json.Array("sources");
  for (const Gaps::Source& source : sources) {
    json.Object().Text("table", source.key.first);
    json.Text("source", source.key.second);
    json.Number("usualMs", std::llround(source.usualMs));
    json.Number("count", source.count);
    json.Number("totalMs", source.totalMs);
    json.Array("gaps");
    for (const Gaps::Gap& gap : source.longest) {
      if (gap.lengthMs < leastMs) continue;
      json.Object();
      WriteTime("from", gap.fromUtcMs, json);
      WriteTime("to", gap.fromUtcMs == kNoUtc ? kNoUtc : gap.fromUtcMs + gap.lengthMs, json);
      json.Number("ms", gap.lengthMs);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
}

void WriteLosses(const RunSummary& summary, JsonWriter& json) {
  json.Array("losses");
  for (const Loss& loss : summary.losses) {
    json.Object().Text("table", loss.table);
    json.Number("count", loss.count);
    json.Number("fromTick", loss.fromTick);
    json.Number("toTick", loss.toTick);
    json.EndObject();
  }
  json.EndArray();
}

void WriteRun(const Run& run, const RunSummary& summary, const std::vector<Gaps::Source>& gaps,
              JsonWriter& json) {
  json.Object().Number("run", run.number);
  WriteTime("first", summary.firstUtcMs, json);
  WriteTime("last", summary.lastUtcMs, json);
  json.Number("firstTick", summary.firstTick);
  json.Number("lastTick", summary.lastTick);
  json.Number("records", summary.records);
  json.Text("ended", HowItEnded(run, summary));
  json.Flag("beginIsMissing", run.beginIsMissing);
  json.Array("files");
  for (const std::string& file : run.files) json.Text(nullptr, file);
  json.EndArray();
  json.Object("facts");
  for (const auto& [name, value] : summary.facts) json.Text(name.c_str(), value);
  json.EndObject();
  WriteDriven(summary.driven, json);
  WriteSources(summary, json);
  json.Object("regularity");
  WriteGaps(gaps, 0, json);
  json.EndObject();
  WriteLosses(summary, json);
  json.EndObject();
}

}  // namespace reader
