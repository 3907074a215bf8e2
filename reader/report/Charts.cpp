#include "Charts.h"

#include "GpsFix.h"
#include "JsonWriter.h"
#include "Tables.h"
#include "Tags.h"

namespace reader {
namespace {

// Whether the record has a value to draw for a column.
bool IsDrawn(const store::Column& column, const Row& row, const Field* field) {
  if (column.chart == store::Chart::kNone || field == nullptr || field->isText) return false;
  if (column.chart == store::Chart::kAltitude) return field->number != store::kNoAltitudeDm;
  // GPS speed is drawn from table gps.
  return row.table != "speed" || row.Number("speed_source") == store::kRadarSpeed;
}

void EndChart(JsonWriter& json) {
  json.EndArray();
  json.EndObject();
}

}  // namespace

void Charts::Add(const Row& row, const GpsReading& gps, std::int64_t ms) {
  if (gps.losesFix) {
    Break("gps", "gps");
    return;
  }
  if (row.table == "radar_state" && row.Number("valid") == 0) Break("radar", row.source);
  if (row.table == "speed_valid" && row.Number("valid") == 0) Break("speed", row.source);
  if (row.known == nullptr) return;
  for (std::size_t i = 0; i < row.known->ColumnCount(); ++i) {
    const store::Column& column = row.known->columns[i];
    const Field* field = row.Find(column.name);
    if (IsDrawn(column, row, field))
      Draw(row,
           {column.chart, row.known->id, i, column.line == nullptr ? std::string(row.source) : column.line},
           ms, static_cast<double>(field->number) / column.perUnit);
  }
}

void Charts::Draw(const Row& row, const Name& name, std::int64_t ms, double value) {
  auto line = lines_.find(name);
  if (line == lines_.end()) {
    if (lines_.size() >= kMostLines) return;
    const bool holds = row.known->cadence == store::Cadence::kOnChange;
    line =
        lines_.emplace(name, Line{{}, {std::string(row.table), std::string(row.source)}, holds, value}).first;
  }
  // A value recorded on change holds until the next one: draws a step.
  if (line->second.holds && !line->second.series.Empty()) line->second.series.Add(ms, line->second.last);
  line->second.series.Add(ms, value);
  line->second.last = value;
}

// Breaks the source's lines: its values are unknown from here on.
void Charts::Break(std::string_view table, std::string_view source) {
  for (auto& [name, line] : lines_) {
    if (line.source.first == table && line.source.second == source) line.series.Break();
  }
}

void Charts::Write(const char* name, const Gaps& gaps, std::int64_t endMs, JsonWriter& json) const {
  json.Array(name);
  store::Chart open = store::Chart::kNone;
  for (const auto& [key, line] : lines_) {
    if (key.chart != open) {
      if (open != store::Chart::kNone) EndChart(json);
      open = key.chart;
      const store::Caption& caption = store::kCharts[static_cast<std::size_t>(open)];
      json.Object().Text("name", caption.name);
      json.Text("unit", caption.unit);
      json.Array("lines");
    }
    json.Object().Text("name", key.line);
    Series series = line.series;
    if (line.holds) series.Add(endMs, line.last);
    series.Write(line.holds ? 0 : gaps.GapMs(line.source.first, line.source.second), json);
    json.EndObject();
  }
  if (open != store::Chart::kNone) EndChart(json);
  json.EndArray();
}

}  // namespace reader
