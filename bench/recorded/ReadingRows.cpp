#include <cstdio>

#include "GpsItem.h"
#include "RowFields.h"
#include "RowKinds.h"
#include "SourceTable.h"
#include "Tables.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"

namespace bench {

using reader::EventKind;

namespace {

// Divides by `perUnit` and prints the decimals.
std::string Decimal(std::int64_t value, double perUnit, int decimals) {
  char text[64];
  (void)std::snprintf(text, sizeof text, "%.*f", decimals, static_cast<double>(value) / perUnit);
  return text;
}

std::string LineOfGpsState(LineValues& /*values*/, const Row& row) {
  return row.Number("valid") == 0 ? "gps none" : "";
}

const Source* ItemOfGpsState(ItemValues& values, const Row& row) {
  if (row.Number("valid") != 0) return nullptr;
  LoseFix(values.At<GpsStatusItem>(SourceNamed("gps")));
  return SourceNamed("gps");
}

std::string LineOfGps(LineValues& /*values*/, const Row& row) {
  const std::int64_t altitude = row.Number("altitude_dm");
  return "gps fix " + Decimal(row.Number("latitude_e4min"), 600'000, 8) + " " +
         Decimal(row.Number("longitude_e4min"), 600'000, 8) + " " +
         Decimal(row.Number("speed_deci_kmh"), 10, 1) + " " + Decimal(row.Number("course_deci_deg"), 10, 1) +
         " " + Decimal(altitude == store::kNoAltitudeDm ? 0 : altitude, 10, 1);
}

const Source* ItemOfGps(ItemValues& values, const Row& row) {
  auto& item = values.At<GpsStatusItem>(SourceNamed("gps"));
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

std::string LineOfRadarState(LineValues& /*values*/, const Row& row) {
  return row.Number("valid") == 0 ? "radar none" : "";
}

const Source* ItemOfRadarState(ItemValues& values, const Row& row) {
  const bool valid = row.Number("valid") != 0;
  values.At<RadarItem>(SourceNamed("radar")).status = valid ? 0 : RadarItem::kStatusInvalid;
  return valid ? nullptr : SourceNamed("radar");
}

std::string LineOfRadar(LineValues& values, const Row& row) {
  values.radar = Number(row, "speed1") + " " + Number(row, "speed2") + " " + Number(row, "speed3");
  return {};
}

const Source* ItemOfRadar(ItemValues& values, const Row& row) {
  auto& item = values.At<RadarItem>(SourceNamed("radar"));
  Set(item.targetSpeedKmh, row, "speed1");
  Set(item.fastestSpeedKmh, row, "speed2");
  Set(item.lockedSpeedKmh, row, "speed3");
  return nullptr;
}

std::string LineOfSpeed(LineValues& values, const Row& row) {
  return row.source == "speed radar" ? "radar " + Number(row, "speed") + " " + values.radar : "";
}

const Source* ItemOfSpeed(ItemValues& values, const Row& row) {
  if (row.source != "speed radar") return nullptr;
  Set(values.At<RadarItem>(SourceNamed("radar")).patrolSpeedKmh, row, "speed");
  return SourceNamed("radar");
}

std::string LineOfMicPresent(LineValues& values, const Row& row) {
  values.micPresent[row.Number("mic")] = row.Number("present") != 0;
  return {};
}

const Source* ItemOfMicPresent(ItemValues& values, const Row& row) {
  auto& mics = values.mics;
  if (mics.size() >= MicStatusResponse::kMaxEntries && !mics.contains(row.Number("mic"))) mics.clear();
  mics[row.Number("mic")].present = row.Number("present") != 0;
  return nullptr;
}

// The item and the message of the microphone manager have the same rows.
std::string LineOfMicActive(LineValues& values, const Row& row) {
  const std::int64_t mic = row.Number("mic");
  return std::string(row.event == EventKind::kInitial ? "mic " : "mic message ") + std::to_string(mic) +
         (values.micPresent[mic] ? " present" : " absent") +
         (row.Number("active") != 0 ? " active" : " idle");
}

const Source* ItemOfMicActive(ItemValues& values, const Row& row) {
  MicStatusResponse::Entry& entry = values.mics[row.Number("mic")];
  entry.mic = e_MicrophonePosition{static_cast<std::uint32_t>(row.Number("mic"))};
  entry.active = row.Number("active") != 0;
  MicStatusResponse one;
  one.Add(entry);
  values.At<MicStatusResponse>(SourceNamed("mic")) = one;
  return SourceNamed("mic");
}

// The rows of an item come in the order 3, 0, 1, 2.
std::string LineOfTemperature(LineValues& values, const Row& row) {
  const std::int64_t sensor = row.Number("sensor");
  return values.PartOf("temp", sensor, Number(row, "temperature"), sensor == 2);
}

const Source* ItemOfTemperature(ItemValues& values, const Row& row) {
  auto& item = values.At<TempStatus>(SourceNamed("temp"));
  std::int16_t* const sensors[] = {&item.sensor0Celsius, &item.sensor1Celsius, &item.sensor2Celsius,
                                   &item.sensor3Celsius};
  const std::int64_t sensor = row.Number("sensor");
  if (sensor < 0 || sensor > 3) return nullptr;
  Set(*sensors[sensor], row, "temperature");
  return sensor == 2 ? SourceNamed("temp") : nullptr;
}

constexpr RowKind kReadingRows[] = {
    {"gps_state", LineOfGpsState, ItemOfGpsState},
    {"gps", LineOfGps, ItemOfGps},
    {"radar_state", LineOfRadarState, ItemOfRadarState},
    {"radar", LineOfRadar, ItemOfRadar},
    {"speed", LineOfSpeed, ItemOfSpeed},
    {"mic_present", LineOfMicPresent, ItemOfMicPresent},
    {"mic_active", LineOfMicActive, ItemOfMicActive},
    {"temperature", LineOfTemperature, ItemOfTemperature},
};

}  // namespace

std::span<const RowKind> ReadingRows() {
  return kReadingRows;
}

}  // namespace bench
