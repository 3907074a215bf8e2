#include "MessagePayloads.h"
#include "RowFields.h"
#include "RowKinds.h"
#include "SourceTable.h"
#include "StreamingLvsStateItem.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"

namespace bench {

using reader::EventKind;

namespace {

std::string Dotted(std::int64_t address) {
  std::string text;
  for (unsigned int shift = 32; shift > 0; shift -= 8) {
    text +=
        (text.empty() ? "" : ".") + std::to_string(static_cast<std::uint64_t>(address) >> (shift - 8) & 0xFF);
  }
  return text;
}

// At the start the item has one row for each of four cameras, camera 3 last.
std::string LineOfCamera(LineValues& values, const Row& row) {
  if (row.event != EventKind::kInitial) return "camera " + Number(row, "camera") + " " + Number(row, "state");
  values.cameras += " " + Number(row, "state");
  return row.Number("camera") == 3 ? "camera entries" + values.cameras + " 0 0 0 0 0" : "";
}

// The item and the message of the video manager have the same rows.
const Source* ItemOfCamera(ItemValues& values, const Row& row) {
  const std::int64_t camera = row.Number("camera");
  if (camera < 0 || camera > 3) return nullptr;
  auto& message = values.At<StateMessage>(SourceNamed("camera"));
  Set(message.number, row, "camera");
  Set(message.state, row, "state");
  values.At<VideoMgrCameraItem>(SourceNamed("camera-entries")).states[static_cast<std::size_t>(camera)] =
      e_CameraState{message.state};
  ItemValues::Value& entries = values.sources.at(SourceNamed("camera-entries"));
  entries.tick = TickOf(row);
  entries.taken = true;
  return SourceNamed("camera");
}

std::string LineOfStream(LineValues& /*values*/, const Row& row) {
  return "stream " + Number(row, "stream") + " " + Number(row, "state");
}

const Source* ItemOfStream(ItemValues& values, const Row& row) {
  auto& message = values.At<StateMessage>(SourceNamed("stream"));
  Set(message.number, row, "stream");
  Set(message.state, row, "state");
  return SourceNamed("stream");
}

std::string LineOfQuality(LineValues& values, const Row& row) {
  const std::int64_t stream = row.Number("stream");
  return values.PartOf("quality", stream, Resolution(row), stream == 3);
}

const Source* ItemOfQuality(ItemValues& values, const Row& row) {
  const std::int64_t stream = row.Number("stream");
  if (stream < 0 || stream > 3) return nullptr;
  auto& streams = values.At<VideoMgrStreamQualityItem>(SourceNamed("quality")).streams;
  SetQuality(streams[static_cast<std::size_t>(stream)], row);
  return stream == 3 ? SourceNamed("quality") : nullptr;
}

std::string LineOfLiveStream(LineValues& /*values*/, const Row& row) {
  return "live " + Number(row, "stream") + " " + Switch(row.Number("enabled") != 0) + " " +
         Number(row, "camera") + " " + Dotted(row.Number("address")) + " " + Number(row, "port") +
         (row.Number("high_quality") != 0 ? " hq" : "");
}

const Source* ItemOfLiveStream(ItemValues& values, const Row& row) {
  constexpr std::int64_t kNoAddress = 0xFFFFFFFF;
  const Source* source = FindSource("live-" + std::to_string(row.Number("stream")));
  if (source == nullptr) return nullptr;
  auto& item = values.At<ExternalMgrApi::StreamingLvsStateItem>(source);
  const std::int64_t address = row.Number("address");
  item.enabled.Value(row.Number("enabled") != 0);
  item.highQuality.Value(row.Number("high_quality") != 0);
  item.camera.Value(static_cast<std::uint16_t>(row.Number("camera")));
  item.address.Value(address == kNoAddress ? "" : Dotted(address));
  item.port.Value(static_cast<std::uint16_t>(row.Number("port")));
  return source;
}

constexpr RowKind kVideoRows[] = {
    {"camera", LineOfCamera, ItemOfCamera},
    {"video_stream", LineOfStream, ItemOfStream},
    {"stream_quality", LineOfQuality, ItemOfQuality},
    {"live_stream", LineOfLiveStream, ItemOfLiveStream},
};

}  // namespace

std::span<const RowKind> VideoRows() {
  return kVideoRows;
}

}  // namespace bench
