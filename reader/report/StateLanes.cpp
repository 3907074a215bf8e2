#include "StateLanes.h"

#include <algorithm>
#include <array>

#include "Clipped.h"
#include "JsonWriter.h"

namespace reader {
namespace {

enum Group : std::size_t { kRecorder, kInputs, kMicrophones, kCameras, kStreams, kReception };
constexpr std::array<const char*, 6> kGroups{"Recorder", "Inputs",  "Microphones",
                                             "Cameras",  "Streams", "Reception"};
constexpr std::array<std::string_view, 3> kRecorderSignals{"recording", "covert", "crash"};

struct State {
  std::size_t group;
  const char* table;
  const char* field;
};
constexpr std::array<State, 6> kStates{{
    {kInputs, "state", "active"},
    {kCameras, "camera", "state"},
    {kStreams, "video_stream", "state"},
    {kStreams, "live_stream", "enabled"},
    {kReception, "gps_state", "valid"},
    {kReception, "radar_state", "valid"},
}};

}  // namespace

StateLanes::StateLanes() {
  for (const std::string_view signal : kRecorderSignals) lanes_[{kRecorder, std::string(signal)}];
}

bool StateLanes::IsRecorder(std::string_view source) {
  return std::find(kRecorderSignals.begin(), kRecorderSignals.end(), source) != kRecorderSignals.end();
}

void StateLanes::Add(const Row& row, std::int64_t ms) {
  if (row.table == "mic_present" || row.table == "mic_active") AddMicrophone(row, ms);
  for (const State& state : kStates) {
    if (row.table != state.table || row.source == "system") continue;
    const std::size_t group = IsRecorder(row.source) ? kRecorder : state.group;
    Set({group, std::string(row.source)}, ms, row.text,
        row.Number(state.field) > 0 ? Lane::Level::kOn : Lane::Level::kOff);
  }
}

void StateLanes::AddMicrophone(const Row& row, std::int64_t ms) {
  if (microphones_.size() >= kMostLanes && !microphones_.contains(std::string(row.source))) return;
  Microphone& microphone = microphones_[std::string(row.source)];
  if (row.table == "mic_present") {
    microphone.present = row.Number("present") != 0;
  } else {
    microphone.active = row.Number("active") != 0;
  }
  const Name name(kMicrophones, row.source);
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
  for (std::size_t group = 0; group < kGroups.size(); ++group) {
    const auto first = lanes_.lower_bound({group, ""});
    if (first == lanes_.end() || first->first.first != group) continue;
    json.Object().Text("name", kGroups[group]);
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
