#include "ArgumentTypes.h"
#include "GpsItem.h"
#include "ItemsOfRows.h"
#include "MessagePayloads.h"
#include "SourceTable.h"
#include "StreamingLvsStateItem.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"

// What a row of each table does to the items.

namespace bench {

namespace {

// Damaged recordings may hold any number.
template <typename T>
void Set(T& field, const Row& row, std::string_view name) {
  field = static_cast<T>(row.Number(name));
}

template <typename Quality>
void SetQuality(Quality& quality, const Row& row) {
  Set(quality.widthPixels, row, "width");
  Set(quality.heightPixels, row, "height");
  Set(quality.framesPerSecond, row, "frames_per_second");
  Set(quality.bitRateKbps, row, "bit_rate_kbps");
}

void SetText(field::Text& text, const Row& row, std::string_view name) {
  text = std::string(row.Text(name));
}

std::string Dotted(std::int64_t address) {
  constexpr std::int64_t kInvalid = 0xFFFFFFFF;
  if (address == kInvalid) return {};
  std::string text;
  for (unsigned int shift = 32; shift > 0; shift -= 8) {
    text +=
        (text.empty() ? "" : ".") + std::to_string(static_cast<std::uint64_t>(address) >> (shift - 8) & 0xFF);
  }
  return text;
}

}  // namespace

const Source* ItemsOfRows::State(const Row& row) {
  const bool active = row.Number("active") != 0;
  if (row.source == "recording") {
    recording_ = active;
    return active ? SourceNamed("record-start") : SourceNamed("record-stop");
  }
  if (row.source == "covert") return active ? SourceNamed("covert-on") : SourceNamed("covert-off");
  if (row.source == "crash") {
    At<CrashItem>(SourceNamed("crash")).crash = active;
    return SourceNamed("crash");
  }
  const std::uint32_t bit = InputBit(row.source == "doorOpen" ? "door" : std::string(row.source));
  if (bit == 0) return nullptr;
  auto& inputs = At<FpgaExternalEventItem>(SourceNamed("input"));
  inputs.changedMask = bit;
  inputs.inputLevels = active ? inputs.inputLevels | bit : inputs.inputLevels & ~bit;
  return SourceNamed("input");
}

const Source* ItemsOfRows::GpsState(const Row& row) {
  if (row.Number("valid") != 0) return nullptr;
  LoseFix(At<GpsStatusItem>(SourceNamed("gps")));
  return SourceNamed("gps");
}

const Source* ItemsOfRows::Gps(const Row& row) {
  auto& item = At<GpsStatusItem>(SourceNamed("gps"));
  PutPlace(item, static_cast<std::int32_t>(row.Number("latitude_e4min")),
           static_cast<std::int32_t>(row.Number("longitude_e4min")));
  Set(item.altitudeDeciMetres, row, "altitude_dm");
  Set(item.speedDeciKmh, row, "speed_deci_kmh");
  Set(item.speedDeciKnots, row, "speed_deci_knots");
  Set(item.courseDeciDegrees, row, "course_deci_deg");
  Set(item.quality, row, "quality");
  Set(item.fixDimensions, row, "fix_dimensions");
  Set(item.satellitesUsed, row, "satellites_used");
  Set(item.satellitesInView, row, "satellites_in_view");
  Set(item.signalDecibels, row, "signal_db");
  Set(item.utcDate, row, "utc_date");
  Set(item.utcTimeOfDayMs, row, "utc_time_ms");
  Set(item.valid, row, "valid");
  return SourceNamed("gps");
}

const Source* ItemsOfRows::RadarState(const Row& row) {
  const bool valid = row.Number("valid") != 0;
  At<RadarItem>(SourceNamed("radar")).status = valid ? 0 : RadarItem::kStatusInvalid;
  return valid ? nullptr : SourceNamed("radar");
}

const Source* ItemsOfRows::Radar(const Row& row) {
  auto& item = At<RadarItem>(SourceNamed("radar"));
  Set(item.targetSpeedKmh, row, "speed1");
  Set(item.fastestSpeedKmh, row, "speed2");
  Set(item.lockedSpeedKmh, row, "speed3");
  return nullptr;
}

const Source* ItemsOfRows::Speed(const Row& row) {
  if (row.source != "speed radar") return nullptr;
  Set(At<RadarItem>(SourceNamed("radar")).patrolSpeedKmh, row, "speed");
  return SourceNamed("radar");
}

const Source* ItemsOfRows::MicPresent(const Row& row) {
  if (mics_.size() >= MicStatusResponse::kMaxEntries && !mics_.contains(row.Number("mic"))) mics_.clear();
  mics_[row.Number("mic")].present = row.Number("present") != 0;
  return nullptr;
}

// The item and the message of the microphone manager have the same rows.
const Source* ItemsOfRows::MicActive(const Row& row) {
  MicStatusResponse::Entry& entry = mics_[row.Number("mic")];
  entry.mic = e_MicrophonePosition{static_cast<std::uint32_t>(row.Number("mic"))};
  entry.active = row.Number("active") != 0;
  MicStatusResponse one;
  one.Add(entry);
  At<MicStatusResponse>(SourceNamed("mic")) = one;
  return SourceNamed("mic");
}

// The rows of an item come in the order 3, 0, 1, 2.
const Source* ItemsOfRows::Temperature(const Row& row) {
  auto& item = At<TempStatus>(SourceNamed("temp"));
  std::int16_t* const sensors[] = {&item.sensor0Celsius, &item.sensor1Celsius, &item.sensor2Celsius,
                                   &item.sensor3Celsius};
  const std::int64_t sensor = row.Number("sensor");
  if (sensor < 0 || sensor > 3) return nullptr;
  Set(*sensors[sensor], row, "temperature");
  return sensor == 2 ? SourceNamed("temp") : nullptr;
}

// The item and the message of the video manager have the same rows.
const Source* ItemsOfRows::Camera(const Row& row) {
  const std::int64_t camera = row.Number("camera");
  if (camera < 0 || camera > 3) return nullptr;
  auto& message = At<StateMessage>(SourceNamed("camera"));
  Set(message.number, row, "camera");
  Set(message.state, row, "state");
  At<VideoMgrCameraItem>(SourceNamed("camera-entries")).states[static_cast<std::size_t>(camera)] =
      e_CameraState{message.state};
  Value& entries = values_.at(SourceNamed("camera-entries"));
  entries.tick = TickOf(row);
  entries.taken = true;
  return SourceNamed("camera");
}

const Source* ItemsOfRows::VideoStream(const Row& row) {
  auto& message = At<StateMessage>(SourceNamed("stream"));
  Set(message.number, row, "stream");
  Set(message.state, row, "state");
  return SourceNamed("stream");
}

const Source* ItemsOfRows::Quality(const Row& row) {
  const std::int64_t stream = row.Number("stream");
  if (stream < 0 || stream > 3) return nullptr;
  auto& streams = At<VideoMgrStreamQualityItem>(SourceNamed("quality")).streams;
  SetQuality(streams[static_cast<std::size_t>(stream)], row);
  return stream == 3 ? SourceNamed("quality") : nullptr;
}

const Source* ItemsOfRows::LiveStream(const Row& row) {
  const Source* source = FindSource("live-" + std::to_string(row.Number("stream")));
  if (source == nullptr) return nullptr;
  auto& item = At<ExternalMgrApi::StreamingLvsStateItem>(source);
  item.enabled.Value(row.Number("enabled") != 0);
  item.highQuality.Value(row.Number("high_quality") != 0);
  item.camera.Value(static_cast<std::uint16_t>(row.Number("camera")));
  item.address.Value(Dotted(row.Number("address")));
  item.port.Value(static_cast<std::uint16_t>(row.Number("port")));
  return source;
}

const Source* ItemsOfRows::Vehicle(const Row& row) {
  auto& item = At<VehicleInfo>(SourceNamed("vehicle"));
  SetText(item.unitId, row, "unit_id");
  SetText(item.licensePlate, row, "license_plate");
  return SourceNamed("vehicle");
}

const Source* ItemsOfRows::SystemInfo(const Row& row) {
  auto& item = At<::SystemInfo>(SourceNamed("system"));
  SetText(item.deviceName, row, "device_name");
  SetText(item.softwareVersion, row, "software_version");
  return SourceNamed("system");
}

const Source* ItemsOfRows::Department(const Row& row) {
  auto& item = At<DepartmentInfo>(SourceNamed("department"));
  SetText(item.name, row, "name");
  SetText(item.division, row, "division");
  return SourceNamed("department");
}

const Source* ItemsOfRows::Officer(const Row& row) {
  auto& item = At<::Officer>(SourceNamed("officer"));
  SetText(item.name, row, "name");
  SetText(item.badgeNumber, row, "badge_number");
  return SourceNamed("officer");
}

const Source* ItemsOfRows::RecordingSettings(const Row& row) {
  auto& item = At<VideoRecordingSettings>(SourceNamed("recording"));
  Set(item.preEventSeconds, row, "pre_event_s");
  Set(item.postEventSeconds, row, "post_event_s");
  SetQuality(item, row);
  return SourceNamed("recording");
}

}  // namespace bench
