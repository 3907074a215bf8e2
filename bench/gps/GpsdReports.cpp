#include "GpsdReports.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

#include "GpsItem.h"
#include "NmeaFix.h"
#include "NmeaSentence.h"

namespace bench {

namespace {

using Json = nlohmann::json;

// Returns nullopt when the number is missing.
std::optional<double> NumberIn(const Json& object, const char* name) {
  const auto found = object.find(name);
  if (found == object.end() || !found->is_number()) return std::nullopt;
  const double number = found->get<double>();
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::string TextIn(const Json& object, const char* name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// Converts to an integer unit, clamped to the range of real receivers.
std::int64_t Units(const std::optional<double>& value, double perUnit) {
  constexpr double kMost = 1e6;
  return std::llround(std::clamp(value.value_or(0) * perUnit, -kMost, kMost));
}

// Converts gpsd's fix status into the quality of a GGA sentence. The statuses are: unknown, normal,
// differential, RTK fixed, RTK floating, dead reckoning without and with satellites, surveyed in (the
// position is not measured), simulated, P(Y) code.
std::uint32_t QualityOf(const Json& tpv) {
  constexpr std::uint32_t kQualities[] = {1, 1, 2, 4, 5, 6, 6, 7, 8, 3};
  const double status = NumberIn(tpv, "status").value_or(0);
  return status < 0 || status >= std::size(kQualities) ? 1 : kQualities[static_cast<std::size_t>(status)];
}

// Reads "2019-03-12T10:51:53.710Z".
void PutTime(const std::string& text, GpsStatusItem& item) {
  item.utcDate = item.utcTimeOfDayMs = 0;
  constexpr std::size_t kShortest = 20;
  if (text.size() < kShortest || text[10] != 'T' || text.back() != 'Z') return;
  std::int64_t ms = 0;
  std::uint32_t date = 0;
  const std::string time = text.substr(11, 2) + text.substr(14, 2) + text.substr(17, text.size() - 18);
  if (!ReadTimeOfDay(time, ms) ||
      !ReadDate(text.substr(8, 2) + text.substr(5, 2) + text.substr(2, 2), date)) {
    return;
  }
  item.utcDate = date;
  item.utcTimeOfDayMs = static_cast<std::uint32_t>(ms);
}

bool HasPlace(const std::optional<double>& latitude, const std::optional<double>& longitude) {
  return latitude && longitude && std::abs(*latitude) <= 90 && std::abs(*longitude) <= 180;
}

void PutReading(const Json& tpv, GpsStatusItem& item) {
  const double mode = NumberIn(tpv, "mode").value_or(0);
  const auto latitude = NumberIn(tpv, "lat");
  const auto longitude = NumberIn(tpv, "lon");
  LoseFix(item);
  PutTime(TextIn(tpv, "time"), item);
  if (mode < 2 || !HasPlace(latitude, longitude)) return;
  item.quality = QualityOf(tpv);
  if (!item.HasFix()) return;
  PutPlaceDegrees(item, *latitude, *longitude);
  const auto altitude = tpv.contains("altMSL") ? NumberIn(tpv, "altMSL") : NumberIn(tpv, "alt");
  if (altitude) item.altitudeDeciMetres = static_cast<std::int32_t>(Units(altitude, 10));
  item.fixDimensions = mode < 3 ? 2 : 3;
  item.valid = 1;
}

}  // namespace

GpsdReport GpsdReports::Take(const std::string& line, GpsStatusItem& item) {
  const Json report = Json::parse(line, nullptr, false);
  if (!report.is_object()) return GpsdReport::kOther;
  const std::string kind = TextIn(report, "class");
  if (kind == "WATCH") return GpsdReport::kWatching;
  if (kind == "SKY") TakeSky(report);
  if (kind != "TPV") return GpsdReport::kOther;
  const bool hadFix = item.HasFix();
  PutReading(report, item);
  if (item.HasFix()) PutMotion(report, hadFix, item);
  item.satellitesInView = inView_;
  item.signalDecibels = bestDecibels_;
  item.satellitesUsed = item.HasFix() ? used_ : 0;
  return GpsdReport::kReading;
}

void GpsdReports::TakeSky(const Json& sky) {
  const auto satellites = sky.find("satellites");
  if (satellites == sky.end() || !satellites->is_array()) return;
  inView_ = used_ = 0;
  bestDecibels_ = GpsStatusItem::kNoSignal;
  for (const Json& satellite : *satellites) {
    if (!satellite.is_object()) continue;
    ++inView_;
    const auto used = satellite.find("used");
    if (used != satellite.end() && *used == true) ++used_;
    const auto decibels = static_cast<std::int32_t>(InField(Units(NumberIn(satellite, "ss"), 1)));
    if (decibels > 0) bestDecibels_ = std::max(bestDecibels_, decibels);
  }
}

void GpsdReports::PutMotion(const Json& tpv, bool hadFix, GpsStatusItem& item) {
  const auto speed = NumberIn(tpv, "speed");  // metres per second
  if (!speed && hadFix && ++motionRepeats_ <= NmeaFix::kMostRepeats) return;
  motionRepeats_ = 0;
  item.speedDeciKmh = InField(Units(speed, 36));
  item.speedDeciKnots = InField(Units(speed, 36 / 1.852));
  item.courseDeciDegrees = InField(Units(NumberIn(tpv, "track"), 10) % 3600);
}

}  // namespace bench
