#include "Charts.h"

#include <array>

#include "GpsFix.h"
#include "JsonWriter.h"

namespace {

enum Chart : std::size_t { kSpeed, kRadar, kTemperature, kAltitude, kSatellites };
struct ChartName {
  const char* name;
  const char* unit;
};
constexpr std::array<ChartName, 5> kCharts{{
    {"Speed", "km/h"},
    {"Radar", "km/h"},
    {"Temperature",
     "\xC2\xB0"
     "C"},
    {"Altitude", "m"},
    {"Satellites", "in use"},
}};

// A field that is drawn; in the order of the charts.
struct Value {
  std::size_t chart;
  const char* table;
  const char* field;
  const char* name;  // null: the source's
  double units;      // make one of the chart's
};
constexpr std::array<Value, 8> kValues{{
    {kSpeed, "gps", "speed_deci_kmh", "GPS", 10},
    {kSpeed, "speed", "speed", "radar", 1},
    {kRadar, "radar", "speed1", "target", 1},
    {kRadar, "radar", "speed2", "fastest", 1},
    {kRadar, "radar", "speed3", "locked", 1},
    {kTemperature, "temperature", "temperature", nullptr, 1},
    {kAltitude, "gps", "altitude_dm", "GPS", 10},
    {kSatellites, "gps", "satellites_used", "GPS", 1},
}};
constexpr std::int64_t kRadarSpeed = 2;

bool IsDrawn(const Value& value, const Row& row) {
  const Field* field = row.Find(value.field);
  if (field == nullptr || field->isText) return false;
  if (row.table == "speed") return row.Number("speed_source") == kRadarSpeed;
  return value.chart != kAltitude || field->number != kAltitudeUnknown;
}

void EndChart(JsonWriter& json) {
  json.EndArray();
  json.EndObject();
}

}  // namespace

void Charts::Add(const Row& row, std::int64_t ms) {
  if (LosesFix(row)) {
    Break("gps", "gps");
    return;
  }
  if (row.table == "radar_state" && row.Number("valid") == 0) Break("radar", row.source);
  if (row.table == "speed_valid" && row.Number("valid") == 0) Break("speed", row.source);
  for (std::size_t i = 0; i < kValues.size(); ++i) {
    const Value& value = kValues[i];
    if (row.table != value.table || !IsDrawn(value, row)) continue;
    const Name name(i, value.name == nullptr ? std::string(row.source) : value.name);
    auto line = lines_.find(name);
    if (line == lines_.end()) {
      if (lines_.size() >= kMostLines) continue;
      line = lines_.emplace(name, Line{{}, {std::string(row.table), std::string(row.source)}}).first;
    }
    line->second.series.Add(ms, static_cast<double>(row.Number(value.field)) / value.units);
  }
}

// The values are not known from here on.
void Charts::Break(std::string_view table, std::string_view source) {
  for (auto& [name, line] : lines_) {
    if (line.source.first == table && line.source.second == source) line.series.Break();
  }
}

void Charts::Write(const char* name, const Gaps& gaps, JsonWriter& json) const {
  json.Array(name);
  const ChartName* open = nullptr;
  for (const auto& [key, line] : lines_) {
    const ChartName& chart = kCharts[kValues[key.first].chart];
    if (&chart != open) {
      if (open != nullptr) EndChart(json);
      open = &chart;
      json.Object().Text("name", chart.name);
      json.Text("unit", chart.unit);
      json.Array("lines");
    }
    json.Object().Text("name", key.second);
    line.series.Write(gaps.GapMs(line.source.first, line.source.second), json);
    json.EndObject();
  }
  if (open != nullptr) EndChart(json);
  json.EndArray();
}
