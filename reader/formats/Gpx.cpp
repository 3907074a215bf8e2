#include "Gpx.h"

#include "Encode.h"
#include "Print.h"

namespace reader {
namespace {

constexpr const char* kHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="MetadataMgr" xmlns="http://www.topografix.com/GPX/1/1"
 xmlns:gpxtpx="http://www.garmin.com/xmlschemas/TrackPointExtension/v2"
 xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
 xsi:schemaLocation="http://www.topografix.com/GPX/1/1 http://www.topografix.com/GPX/1/1/gpx.xsd">
)";

constexpr std::int64_t kOldPositionMs = 2000;

// Appends the attributes lat and lon, and the elements ele and time.
void AppendPlace(const GpsFix& fix, std::int64_t utcMs, UtcWriter& utc, std::string& out) {
  constexpr std::int64_t kLongitude180 = std::int64_t{180} * 600'000;  // GPX allows only -180
  const bool isLast = fix.longitudeE4min == kLongitude180;
  out += " lat=\"";
  AppendDecimal(fix.Latitude(), 7, out);
  out += "\" lon=\"";
  AppendDecimal(isLast ? -180 : fix.Longitude(), 7, out);
  out += "\">";
  if (fix.hasAltitude) {
    out += "<ele>";
    AppendDecimal(static_cast<double>(fix.altitudeDm) / 10, 1, out);
    out += "</ele>";
  }
  if (utcMs == kNoUtc) return;
  out += "<time>";
  utc.Append(utcMs, out);
  out += "</time>";
}

void AppendQuality(const GpsFix& fix, std::string& out) {
  constexpr std::int64_t kDifferential = 2;
  if (fix.quality == kDifferential) {
    out += "<fix>dgps</fix>";
  } else if (fix.dimensions == 2 || fix.dimensions == 3) {
    out += fix.dimensions == 2 ? "<fix>2d</fix>" : "<fix>3d</fix>";
  }
  if (fix.satellites < 0) return;
  out += "<sat>";
  AppendNumber(fix.satellites, out);
  out += "</sat>";
}

// GPX wants m/s, and degrees below 360.
void AppendMotion(const GpsFix& fix, std::string& out) {
  out += "<extensions><gpxtpx:TrackPointExtension><gpxtpx:speed>";
  AppendDecimal(static_cast<double>(fix.speedDeciKmh) / 36, 2, out);
  out += "</gpxtpx:speed>";
  if (fix.courseDeciDeg >= 0 && fix.courseDeciDeg <= 3600) {
    out += "<gpxtpx:course>";
    AppendDecimal(static_cast<double>(fix.courseDeciDeg % 3600) / 10, 1, out);
    out += "</gpxtpx:course>";
  }
  out += "</gpxtpx:TrackPointExtension></extensions>";
}

}  // namespace

void GpxWaypoints::Begin(std::string& out) {
  out += kHead;
}

void GpxWaypoints::Append(const Row& row, std::string& out) {
  if (track_.Take(row) != TrackFollower::Step::kBookmark) return;
  const std::string name = "bookmark " + std::to_string(track_.Bookmarks());
  const GpsFix* fix = track_.Last();
  if (fix == nullptr) {
    messages_.Note(name + " has no position, so it is no waypoint");
    return;
  }
  UtcWriter utc;
  out += "<wpt";
  AppendPlace(*fix, row.utcMs, utc, out);
  out += "<name>" + name + "</name>";
  if (track_.AgeMs() > kOldPositionMs) {
    out += "<cmt>position of " + DurationText(track_.AgeMs()) + " before</cmt>";
  }
  out += "<type>bookmark</type></wpt>\n";
}

void GpxTracks::Append(const Row& row, std::string& out) {
  const TrackFollower::Step step = track_.Take(row);
  if (step != TrackFollower::Step::kBegin && step != TrackFollower::Step::kOn) return;
  if (step == TrackFollower::Step::kBegin) BeginSegment(row.run, out);
  const GpsFix& fix = *track_.Last();
  out += "<trkpt";
  AppendPlace(fix, fix.utcMs, utc_, out);
  AppendQuality(fix, out);
  AppendMotion(fix, out);
  out += "</trkpt>\n";
}

void GpxTracks::Skip(const Row& row) {
  (void)track_.Take(row);
  track_.Break();
}

void GpxTracks::BeginSegment(int run, std::string& out) {
  if (run_ != 0) out += "</trkseg>\n";
  if (run != run_) {
    if (run_ != 0) out += "</trk>\n";
    const std::string number = std::to_string(run);
    out += "<trk><name>run " + number + "</name><number>" + number + "</number>\n";
    run_ = run;
  }
  out += "<trkseg>\n";
}

void GpxTracks::End(std::string& out) {
  if (run_ != 0) out += "</trkseg>\n</trk>\n";
  out += "</gpx>\n";
}

}  // namespace reader
