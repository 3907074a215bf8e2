#include "LinesOfRows.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

namespace bench {

using reader::EventKind;

namespace {

std::string Number(const Row& row, std::string_view name) {
  return std::to_string(row.Number(name));
}

// Divides by `perUnit` and prints the decimals.
std::string Decimal(std::int64_t value, double perUnit, int decimals) {
  char text[64];
  (void)std::snprintf(text, sizeof text, "%.*f", decimals, static_cast<double>(value) / perUnit);
  return text;
}

// Makes a word of a drive: blanks, control characters and an empty text become "_".
std::string Word(std::string_view text) {
  std::string word(text.empty() ? "_" : text);
  const auto separates = [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7f'; };
  std::replace_if(word.begin(), word.end(), separates, '_');
  if (word[0] == '#') word[0] = '_';  // "#" starts a comment
  return word;
}

std::string Switch(bool on) {
  return on ? "on" : "off";
}

std::string Resolution(const Row& row) {
  return Number(row, "width") + "x" + Number(row, "height") + " " + Number(row, "frames_per_second") + " " +
         Number(row, "bit_rate_kbps");
}

std::string TwoTexts(const char* verb, const Row& row, std::string_view first, std::string_view second) {
  return std::string(verb) + " " + Word(row.Text(first)) + " " + Word(row.Text(second));
}

}  // namespace

struct LinesOfRows::Table {
  std::string_view name;
  Make make;
};

const LinesOfRows::Table LinesOfRows::kTables[] = {
    {"state", &LinesOfRows::State},
    {"bookmark", &LinesOfRows::Bookmark},
    {"gps_state", &LinesOfRows::GpsState},
    {"gps", &LinesOfRows::Gps},
    {"radar_state", &LinesOfRows::RadarState},
    {"radar", &LinesOfRows::Radar},
    {"speed", &LinesOfRows::Speed},
    {"mic_present", &LinesOfRows::MicPresent},
    {"mic_active", &LinesOfRows::MicActive},
    {"temperature", &LinesOfRows::Temperature},
    {"camera", &LinesOfRows::Camera},
    {"video_stream", &LinesOfRows::VideoStream},
    {"stream_quality", &LinesOfRows::Quality},
    {"live_stream", &LinesOfRows::LiveStream},
    {"vehicle", &LinesOfRows::Vehicle},
    {"system_info", &LinesOfRows::SystemInfo},
    {"department", &LinesOfRows::Department},
    {"officer", &LinesOfRows::Officer},
    {"recording_settings", &LinesOfRows::RecordingSettings},
};

std::string LinesOfRows::Take(const Row& row) {
  if (row.event == EventKind::kRestated) return {};
  for (const Table& table : kTables) {
    if (table.name == row.table) return (this->*table.make)(row);
  }
  return {};
}

std::string LinesOfRows::State(const Row& row) {
  const bool active = row.Number("active") != 0;
  if (row.source == "recording") {
    if (row.event == EventKind::kInitial) return active ? "direct record start" : "";
    return active ? "record start" : "record stop";
  }
  if (row.source == "covert") return "covert " + Switch(active);
  if (row.source == "crash") return "crash " + Switch(active);
  if (row.source == "doorOpen") return "input door " + Switch(active);
  for (const char* input : {"lights", "brakes", "siren", "aux", "ignition"}) {
    if (row.source == input) return "input " + std::string(input) + " " + Switch(active);
  }
  return {};
}

std::string LinesOfRows::Bookmark(const Row& /*row*/) {
  return "bookmark";
}

std::string LinesOfRows::GpsState(const Row& row) {
  return row.Number("valid") == 0 ? "gps none" : "";
}

std::string LinesOfRows::Gps(const Row& row) {
  constexpr std::int64_t kUnknown = 134'217'727;
  const std::int64_t altitude = row.Number("altitude_dm");
  return "gps fix " + Decimal(row.Number("latitude_e4min"), 600'000, 8) + " " +
         Decimal(row.Number("longitude_e4min"), 600'000, 8) + " " +
         Decimal(row.Number("speed_deci_kmh"), 10, 1) + " " + Decimal(row.Number("course_deci_deg"), 10, 1) +
         " " + Decimal(altitude == kUnknown ? 0 : altitude, 10, 1);
}

std::string LinesOfRows::RadarState(const Row& row) {
  return row.Number("valid") == 0 ? "radar none" : "";
}

std::string LinesOfRows::Radar(const Row& row) {
  radar_ = Number(row, "speed1") + " " + Number(row, "speed2") + " " + Number(row, "speed3");
  return {};
}

std::string LinesOfRows::Speed(const Row& row) {
  return row.source == "speed radar" ? "radar " + Number(row, "speed") + " " + radar_ : "";
}

std::string LinesOfRows::MicPresent(const Row& row) {
  micPresent_[row.Number("mic")] = row.Number("present") != 0;
  return {};
}

// The item and the message of the microphone manager have the same rows.
std::string LinesOfRows::MicActive(const Row& row) {
  const std::int64_t mic = row.Number("mic");
  return std::string(row.event == EventKind::kInitial ? "mic " : "mic message ") + std::to_string(mic) +
         (micPresent_[mic] ? " present" : " absent") + (row.Number("active") != 0 ? " active" : " idle");
}

std::string LinesOfRows::PartOf(const char* verb, std::int64_t part, const std::string& value, bool last) {
  const std::string name = std::string(verb) + " " + std::to_string(part);
  const bool isNew = std::exchange(parts_[name], value) != value;
  if (isNew || (last && changed_.empty())) {
    changed_.append(changed_.empty() ? "" : "\n").append(name).append(" ").append(value);
  }
  return last ? std::exchange(changed_, {}) : "";
}

std::string LinesOfRows::Temperature(const Row& row) {
  const std::int64_t sensor = row.Number("sensor");  // the rows come in the order 3, 0, 1, 2
  return PartOf("temp", sensor, Number(row, "temperature"), sensor == 2);
}

// At the start the item has one row for each of four cameras, camera 3 last.
std::string LinesOfRows::Camera(const Row& row) {
  if (row.event != EventKind::kInitial) return "camera " + Number(row, "camera") + " " + Number(row, "state");
  cameras_ += " " + Number(row, "state");
  return row.Number("camera") == 3 ? "camera entries" + cameras_ + " 0 0 0 0 0" : "";
}

std::string LinesOfRows::VideoStream(const Row& row) {
  return "stream " + Number(row, "stream") + " " + Number(row, "state");
}

std::string LinesOfRows::Quality(const Row& row) {
  const std::int64_t stream = row.Number("stream");
  return PartOf("quality", stream, Resolution(row), stream == 3);
}

std::string LinesOfRows::LiveStream(const Row& row) {
  const auto address = static_cast<std::uint64_t>(row.Number("address"));
  std::string dotted;
  for (unsigned int shift = 32; shift > 0; shift -= 8) {
    dotted += (dotted.empty() ? "" : ".") + std::to_string(address >> (shift - 8) & 0xFF);
  }
  return "live " + Number(row, "stream") + " " + Switch(row.Number("enabled") != 0) + " " +
         Number(row, "camera") + " " + dotted + " " + Number(row, "port") +
         (row.Number("high_quality") != 0 ? " hq" : "");
}

std::string LinesOfRows::Vehicle(const Row& row) {
  return TwoTexts("config vehicle", row, "unit_id", "license_plate");
}

std::string LinesOfRows::SystemInfo(const Row& row) {
  return TwoTexts("config system", row, "device_name", "software_version");
}

std::string LinesOfRows::Department(const Row& row) {
  return TwoTexts("config department", row, "name", "division");
}

std::string LinesOfRows::Officer(const Row& row) {
  return TwoTexts("config officer", row, "name", "badge_number");
}

std::string LinesOfRows::RecordingSettings(const Row& row) {
  return "config recording " + Number(row, "pre_event_s") + " " + Number(row, "post_event_s") + " " +
         Resolution(row);
}

}  // namespace bench
