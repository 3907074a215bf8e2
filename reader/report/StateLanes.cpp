#include "StateLanes.h"

#include <algorithm>
#include <array>

#include "Clipped.h"
#include "JsonWriter.h"
#include "Tables.h"

namespace reader {
namespace {

// The recorder's own signals stand first, in a group of their own.
constexpr std::size_t kRecorder = 0;
constexpr const char* kRecorderCaption = "Recorder";
constexpr std::array<std::string_view, 3> kRecorderSignals{"recording", "covert", "crash"};

const store::Column* LaneColumn(const Row& row) {
  if (row.known == nullptr || row.source == "system") return nullptr;
  for (const store::Column& column : row.known->columns) {
    if (column.lanes != store::Lanes::kNone) return &column;
  }
  return nullptr;
}

}  // namespace

StateLanes::StateLanes() {
  for (const std::string_view signal : kRecorderSignals) lanes_[{kRecorder, std::string(signal)}];
}

bool StateLanes::IsRecorder(std::string_view source) {
  return std::find(kRecorderSignals.begin(), kRecorderSignals.end(), source) != kRecorderSignals.end();
}

void StateLanes::Add(const Row& row, std::int64_t ms) {
  const store::Column* column = LaneColumn(row);
  if (column == nullptr) return;
  if (column->lanes == store::Lanes::kMicrophones) {
    AddMicrophone(row, ms);
    return;
  }
  const std::size_t group = IsRecorder(row.source) ? kRecorder : static_cast<std::size_t>(column->lanes);
  Set({group, std::string(row.source)}, ms, row.text,
      row.Number(column->name) > 0 ? Lane::Level::kOn : Lane::Level::kOff);
}

void StateLanes::AddMicrophone(const Row& row, std::int64_t ms) {
  if (microphones_.size() >= kMostLanes && !microphones_.contains(std::string(row.source))) return;
  Microphone& microphone = microphones_[std::string(row.source)];
  if (row.table == "mic_present") {
    microphone.present = row.Number("present") != 0;
  } else {
    microphone.active = row.Number("active") != 0;
  }
  const Name name(static_cast<std::size_t>(store::Lanes::kMicrophones), row.source);
  if (microphone.active) {
    Set(name, ms, "active", Lane::Level::kOn);
  } else if (microphone.present) {
    Set(name, ms, "present", Lane::Level::kPresent);
  } else {
    Set(name, ms, "absent", Lane::Level::kOff);
  }
}

void StateLanes::Set(const Name& name, std::int64_t ms, std::string_view text, Lane::Level level) {
  constexpr std::size_t kTextBytes = 100;
  if (lanes_.size() < kMostLanes || lanes_.contains(name))
    lanes_[name].Set(ms, Clipped(text, kTextBytes), level);
}

void StateLanes::BeginAt(std::int64_t ms) {
  for (auto& [name, lane] : lanes_) lane.BeginAt(ms);
}

void StateLanes::Write(const char* name, std::int64_t endMs, JsonWriter& json) const {
  json.Array(name);
  for (std::size_t group = 0; group < store::kLanes.size(); ++group) {
    const auto first = lanes_.lower_bound({group, ""});
    if (first == lanes_.end() || first->first.first != group) continue;
    json.Object().Text("name", group == kRecorder ? kRecorderCaption : store::kLanes[group].name);
    json.Array("lanes");
    for (auto lane = first; lane != lanes_.end() && lane->first.first == group; ++lane) {
      json.Object().Text("name", lane->first.second);
      lane->second.Write(endMs, json);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
}

}  // namespace reader
