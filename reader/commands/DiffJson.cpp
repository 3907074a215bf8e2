#include "DiffJson.h"

#include "RunJson.h"

namespace reader {
namespace {

constexpr std::array<const char*, static_cast<std::size_t>(Difference::kCount)> kNames{
    "values", "ticks", "order", "arrivals", "utc", "onlyInA", "onlyInB"};

void WriteRecord(const char* name, const std::optional<ComparedRow>& row, JsonWriter& json) {
  if (!row) return json.Null(name);
  json.Object(name).Number("record", row->seq);
  WriteTime("time", row->utcMs, json);
  json.Number("tick", row->tick);
  if (row->ticked) {
    json.Number("senderTick", row->senderTick);
  } else {
    json.Null("senderTick");
  }
  json.Text("content", row->values);
  json.EndObject();
}

void WriteFirst(const Comparison& comparison, JsonWriter& json) {
  if (!comparison.Differs()) return json.Null("first");
  const Comparison::First& first = comparison.FirstDifference();
  const ComparedRow& row = first.a ? *first.a : *first.b;
  json.Object("first").Text("table", row.table);
  json.Text("source", row.source);
  json.Text("kind", kNames[static_cast<std::size_t>(first.kind)]);
  if (const auto ms = DifferenceMs(first, comparison.Shift())) {
    json.Number("ms", *ms);
  } else {
    json.Null("ms");
  }
  WriteRecord("a", first.a, json);
  WriteRecord("b", first.b, json);
  json.EndObject();
}

}  // namespace

void WriteComparison(std::int64_t run, const Comparison& comparison, JsonWriter& json) {
  json.Object().Number("run", run);
  json.Number("alike", comparison.Pairs());
  json.Number("differences", comparison.Total());
  WriteFirst(comparison, json);
  json.Array("sources");
  for (const auto& [source, counts] : comparison.Sources()) {
    json.Object().Text("source", source);
    for (std::size_t kind = 0; kind < counts.size(); ++kind) json.Number(kNames[kind], counts[kind]);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
}

}  // namespace reader
