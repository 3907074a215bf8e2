#include "GeoJson.h"

#include <cmath>

#include "Encode.h"

namespace reader {
namespace {

// RFC 7946, 3.1.9: a line must not cross the 180th meridian.
bool CrossesAntimeridian(const GpsFix& from, const GpsFix& to) {
  return std::abs(from.Longitude() - to.Longitude()) > 180;
}

void AppendCoordinates(const GpsFix& fix, std::string& out) {
  out += '[';
  AppendDecimal(fix.Longitude(), 7, out);
  out += ',';
  AppendDecimal(fix.Latitude(), 7, out);
  out += ']';
}

void AppendTime(std::int64_t utcMs, UtcWriter& utc, std::string& out) {
  if (utcMs == kNoUtc) {
    out += "null";
    return;
  }
  out += '"';
  utc.Append(utcMs, out);
  out += '"';
}

}  // namespace

void GeoJson::Begin(std::string& out) {
  out += "{\"type\":\"FeatureCollection\",\"features\":[\n";
}

void GeoJson::Append(const Row& row, std::string& out) {
  const TrackFollower::Step step = track_.Take(row);
  if (step == TrackFollower::Step::kNone) return;
  if (step == TrackFollower::Step::kBookmark) {
    AppendBookmark(row, out);
    return;
  }
  const GpsFix& fix = *track_.Last();
  const bool begins =
      step == TrackFollower::Step::kBegin || (positions_ > 0 && CrossesAntimeridian(last_, fix));
  if (begins) {
    FinishLine(out);
  } else if (positions_ == kMostPositions) {
    const GpsFix joint = last_;
    FinishLine(out);
    AddPosition(joint);
  }
  run_ = row.run;
  AddPosition(fix);
}

void GeoJson::Skip(const Row& row) {
  (void)track_.Take(row);
  track_.Break();
}

void GeoJson::BeginFeature(const std::string& geometry, std::string& out) {
  out += any_ ? ",\n" : "";
  out += R"({"type":"Feature","geometry":)" + geometry + ",\"properties\":{";
  any_ = true;
}

void GeoJson::AppendBookmark(const Row& row, std::string& out) {
  std::string geometry = "null";
  if (const GpsFix* fix = track_.Last(); fix != nullptr) {
    geometry = R"({"type":"Point","coordinates":)";
    AppendCoordinates(*fix, geometry);
    geometry += '}';
  }
  BeginFeature(geometry, out);
  out += R"("kind":"bookmark","name":"bookmark )" + std::to_string(track_.Bookmarks());
  out += R"(","run":)" + std::to_string(row.run) + R"(,"time":)";
  AppendTime(row.utcMs, utc_, out);
  if (track_.Last() != nullptr) out += ",\"position_age_ms\":" + std::to_string(track_.AgeMs());
  out += "}}";
}

void GeoJson::AddPosition(const GpsFix& fix) {
  if (positions_++ > 0) {
    for (std::string* list : {&coordinates_, &times_, &speeds_, &courses_, &altitudes_}) *list += ',';
  }
  AppendCoordinates(fix, coordinates_);
  AppendTime(fix.utcMs, utc_, times_);
  AddValue(true, fix.speedDeciKmh, speeds_);
  AddValue(true, fix.courseDeciDeg, courses_);
  AddValue(fix.hasAltitude, fix.altitudeDm, altitudes_);
  last_ = fix;
}

void GeoJson::AddValue(bool known, std::int64_t tenths, std::string& list) const {
  if (known) {
    AppendDecimal(static_cast<double>(tenths) / 10, 1, list);
  } else {
    list += "null";
  }
}

void GeoJson::FinishLine(std::string& out) {
  if (positions_ == 0) return;
  // A LineString needs two positions, so a single one becomes a Point.
  BeginFeature(positions_ == 1 ? R"({"type":"Point","coordinates":)" + coordinates_ + "}"
                               : R"({"type":"LineString","coordinates":[)" + coordinates_ + "]}",
               out);
  out += R"("kind":"track","run":)" + std::to_string(run_) + R"(,"coordinateProperties":{"times":[)";
  out += times_ + "],\"speed_kmh\":[" + speeds_ + "],\"course_deg\":[" + courses_ + "],\"altitude_m\":[";
  out += altitudes_ + "]}}}";
  positions_ = 0;
  for (std::string* list : {&coordinates_, &times_, &speeds_, &courses_, &altitudes_}) list->clear();
}

void GeoJson::End(std::string& out) {
  FinishLine(out);
  out += "\n]}\n";
}

}  // namespace reader
