#include "DriveData.h"

#include <algorithm>
#include <cstdlib>

#include "Clipped.h"
#include "JsonWriter.h"
#include "Print.h"
#include "Utc.h"

namespace reader {
namespace {

constexpr std::int64_t kClockLeapMs = 1000;
constexpr std::size_t kFactBytes = 200;

}  // namespace

DriveData::DriveData(const Run& run, const RunSummary& summary, Part part)
    : run_(run),
      summary_(summary),
      part_(part),
      clock_(summary.firstTick),
      events_(part.bookmarksBefore),
      gaps_(summary),
      losses_(clock_, part.allSources) {}

void DriveData::Add(const Row& row) {
  const std::int64_t ms = clock_.Ms(row);
  const std::int64_t utcMs = RunClock::UtcMs(row);
  if (!Any()) Begin(ms);
  beginMs_ = std::min(beginMs_, ms);
  endMs_ = std::max(endMs_, ms);
  ++records_;
  if (utcMs != kNoUtc) FollowClock(ms, utcMs);
  losses_.Add(row, ms);
  const GpsReading gps = ReadGps(row);
  const TrackFollower::Step step = follower_.Take(row, gps);
  driven_.Add(step, follower_, EventTick(row));
  FollowRecording(row);
  // Skips restated records when the previous file is part of the input.
  if (row.event == EventKind::kRestated && !run_.beginIsMissing && !summary_.isCopy) return;
  if (step == TrackFollower::Step::kBegin) track_.Break();
  if (step == TrackFollower::Step::kBegin || step == TrackFollower::Step::kOn)
    track_.Add(ms, *follower_.Last());
  charts_.Add(row, gps, ms);
  lanes_.Add(row, ms);
  events_.Follow(row);
  events_.Add(row, ms, utcMs, Place());
  if (row.event != EventKind::kRestated) gaps_.Add(row, ms);
}

// Earlier records give the states at the start of the shown part.
void DriveData::Skip(const Row& row) {
  if (!Any()) lanes_.Add(row, clock_.Ms(row));
  (void)follower_.Take(row);
  FollowRecording(row);
  events_.Follow(row);
}

void DriveData::Begin(std::int64_t ms) {
  beginMs_ = ms;
  endMs_ = ms;
  lanes_.BeginAt(ms);
}

const GpsFix* DriveData::Place() const {
  const auto gapMs = static_cast<std::int64_t>(gaps_.GapMs("gps", "gps"));
  return gapMs == 0 || follower_.AgeMs() < gapMs ? follower_.Last() : nullptr;
}

// The page has one UTC offset, the last one. A leap of the clock is listed as an event.
void DriveData::FollowClock(std::int64_t ms, std::int64_t utcMs) {
  const std::int64_t offsetMs = utcMs - ms;
  const std::int64_t leapMs = offsetMs - offsetMs_;
  if (offsetMs_ != kNoUtc && std::abs(leapMs) > kClockLeapMs)
    events_.Say(ms, utcMs, "clock",
                "set " + DurationText(std::abs(leapMs)) + (leapMs > 0 ? " ahead" : " back"));
  offsetMs_ = offsetMs;
}

void DriveData::FollowRecording(const Row& row) {
  const bool starts = row.table == "state" && row.source == "recording" && row.Number("active") > 0;
  if (starts && row.event == EventKind::kEvent && !recordingMs_) recordingMs_ = clock_.Ms(row);
}

void DriveData::Write(JsonWriter& json) const {
  json.Object();
  WriteAbout(json);
  if (!videos_.empty()) WriteVideos(json);
  track_.Write("track", json);
  charts_.Write("charts", gaps_, endMs_, json);
  lanes_.Write("groups", endMs_, json);
  events_.Write(json);
  gaps_.Write("gaps", endMs_, json);
  losses_.Write(json);
  WriteSources(json);
  json.EndObject();
}

void DriveData::WriteAbout(JsonWriter& json) const {
  json.Number("run", run_.number);
  json.Text("ended", HowItEnded(run_, summary_));
  json.Flag("beginIsMissing", run_.beginIsMissing);
  json.Flag("isWhole", part_.isWhole);
  json.Number("records", records_);
  json.Number("beginMs", beginMs_);
  json.Number("endMs", endMs_);
  json.Number("firstTick", summary_.firstTick);
  if (offsetMs_ == kNoUtc) {
    json.Null("utcMs");
  } else {
    json.Number("utcMs", offsetMs_);
  }
  json.Object("driven").Decimal("metres", driven_.Metres());
  json.Number("leaps", driven_.Leaps());
  json.Decimal("leapMetres", driven_.LeapMetres());
  json.EndObject();
  json.Array("files");
  for (const std::string& file : run_.files) json.Text(nullptr, file);
  json.EndArray();
  json.Object("facts");
  for (const auto& [name, value] : summary_.facts)
    json.Text(Clipped(name, kFactBytes).c_str(), Clipped(value, kFactBytes));
  json.EndObject();
}

void DriveData::WriteVideos(JsonWriter& json) const {
  json.Array("videos");
  for (const Video& video : videos_) {
    json.Object().Text("file", video.file);
    json.Number("startMs", recordingMs_.value_or(0) + video.offsetMs);
    json.EndObject();
  }
  json.EndArray();
}

void DriveData::WriteSources(JsonWriter& json) const {
  json.Array("sources");
  const std::size_t count = std::min(summary_.order.size(), kMostSources);
  for (std::size_t i = 0; i < count; ++i) {
    const SourceSummary& source = summary_.sources.at(summary_.order[i]);
    json.Object().Text("table", summary_.order[i].first);
    json.Text("source", Clipped(summary_.order[i].second, kFactBytes));
    json.Number("records", source.records);
    json.Text("first", UtcText(source.firstUtcMs));
    json.Text("last", UtcText(source.lastUtcMs));
    json.EndObject();
  }
  json.EndArray();
  json.Number("moreSources", static_cast<std::int64_t>(summary_.order.size() - count));
}

}  // namespace reader
