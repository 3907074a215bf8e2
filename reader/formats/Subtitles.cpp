#include "Subtitles.h"

#include <algorithm>

#include "Print.h"

namespace reader {
namespace {

void PrintTime(std::int64_t ms, std::string& out) {
  const auto whole = static_cast<long long>(ms);
  Print(out, "%02lld:%02lld:%02lld,%03lld", whole / 3'600'000, whole / 60'000 % 60, whole / 1000 % 60,
        whole % 1000);
}

std::string NoData(const std::string& source, std::int64_t ms) {
  return source + " no data for " + std::to_string(ms / 1000) + " s";
}

}  // namespace

void Subtitles::Append(const Row& row, std::string& out) {
  if (!Enter(row)) return;
  writing_ = true;
  // A change at the very start of a second shows in that second's cue. A bookmark at that instant belongs to
  // that second's cue, too, so the cue begins first.
  const int inclusive = row.table == "bookmark" ? 1 : 0;
  if (begun_) Advance(EventTick(row) - beginTick_ + inclusive, out);
  Take(row);
}

void Subtitles::Skip(const Row& row) {
  over_ = over_ || writing_;
  if (!Enter(row)) return;
  if (begun_) nextCue_ = std::max(nextCue_, (EventTick(row) - beginTick_) / kCueMs + 1);
  Take(row);
}

// Returns false after the end of the video's run.
bool Subtitles::Enter(const Row& row) {
  if (row.run != run_) {
    over_ = over_ || begun_;
    BeginRun(row.run);
  }
  if (over_) return false;
  if (!begun_) FindBegin(row);
  if (row.utcMs != kNoUtc) utcOffsetMs_ = row.utcMs - EventTick(row);
  return true;
}

void Subtitles::BeginRun(int run) {
  run_ = run;
  utcOffsetMs_ = kNoUtc;
  known_ = false;
  hasFix_ = false;
  gpsFreshness_ = {};
  radars_.clear();
  active_.clear();
}

void Subtitles::FindBegin(const Row& row) {
  if (begin_.Compare(row) < 0 || (begin_.run != 0 && begin_.run != row.run)) return;
  begun_ = true;
  beginTick_ = begin_.by == Position::By::kTick ? begin_.value : EventTick(row) + begin_.AgeMs(row);
}

// Writes the cues that ended before `ms` of the video, and begins the next one.
void Subtitles::Advance(std::int64_t ms, std::string& out) {
  while (ms > nextCue_ * kCueMs && nextCue_ <= kLastCue) {
    FinishCue(out);
    cue_ = StateText();
    ++nextCue_;
  }
}

void Subtitles::FinishCue(std::string& out) {
  if (nextCue_ == 0) return;
  if (!cue_.empty() || !bookmarksText_.empty()) {
    Print(out, "%d\n", ++cues_);
    PrintTime((nextCue_ - 1) * kCueMs, out);
    out += " --> ";
    PrintTime(nextCue_ * kCueMs, out);
    out.append("\n").append(cue_).append(bookmarksText_).append("\n");
  }
  bookmarksText_.clear();
}

void Subtitles::End(std::string& out) {
  FinishCue(out);
}

void Subtitles::Take(const Row& row) {
  if (row.table == "bookmark") {
    if (row.event != EventKind::kEvent) return;
    ++bookmarks_;
    if (begun_) bookmarksText_ += "bookmark " + std::to_string(bookmarks_) + "\n";
    return;
  }
  if (row.table == "clock" || row.table == "run_end") return;
  known_ = true;
  if (row.table == "gps" || row.table == "gps_state") {
    TakeFix(row);
  } else if (row.table == "state") {
    const std::string name(row.source);
    active_.erase(std::remove(active_.begin(), active_.end(), name), active_.end());
    if (row.Number("active") != 0) active_.push_back(name);
  } else {
    TakeRadar(row);
  }
}

void Subtitles::TakeFix(const Row& row) {
  const GpsReading reading = ReadGps(row);
  if (row.table == "gps" && row.event != EventKind::kRestated) gpsFreshness_.Add(EventTick(row));
  if (reading.losesFix) hasFix_ = false;
  if (!reading.hasFix) return;
  hasFix_ = true;
  fix_ = reading.fix;
}

void Subtitles::TakeRadar(const Row& row) {
  const std::string name(row.source);
  if (row.table != "radar" && row.table != "speed") {
    if (row.Number("valid") == 0) radars_.erase(name);
    return;
  }
  Radar& radar = radars_[name];
  if (row.event != EventKind::kRestated) radar.freshness.Add(EventTick(row));
  radar.reading.clear();
  if (row.table == "speed") {
    Print(radar.reading, "%lld km/h", static_cast<long long>(row.Number("speed")));
  } else {
    Print(radar.reading, "target %lld, fastest %lld, locked %lld km/h",
          static_cast<long long>(row.Number("speed1")), static_cast<long long>(row.Number("speed2")),
          static_cast<long long>(row.Number("speed3")));
  }
}

std::string Subtitles::SpeedText(std::int64_t tick) const {
  const std::int64_t silentMs = gpsFreshness_.SilentMs(tick);
  std::string text;
  if (!hasFix_) {
    text = "no fix";
  } else if (silentMs > 0) {
    text = NoData("GPS", silentMs);
  } else {
    Print(text, "GPS %.1f km/h  %.6f %.6f", static_cast<double>(fix_.speedDeciKmh) / 10, fix_.Latitude(),
          fix_.Longitude());
  }
  return text + "\n";
}

std::string Subtitles::RadarText(std::int64_t tick) const {
  std::string text;
  for (const auto& [source, radar] : radars_) {
    if (!text.empty()) text += "  ";
    const std::int64_t silentMs = radar.freshness.SilentMs(tick);
    text += silentMs > 0 ? NoData(source, silentMs) : source + " " + radar.reading;
  }
  return text.empty() ? text : text + "\n";
}

std::string Subtitles::StateText() const {
  if (!known_) return {};
  const std::int64_t tick = beginTick_ + nextCue_ * kCueMs;
  std::string text;
  if (utcOffsetMs_ != kNoUtc) text += UtcText(tick + utcOffsetMs_) + "\n";
  text += SpeedText(tick) + RadarText(tick);
  for (const std::string& name : active_) text.append(&name == active_.data() ? "" : ", ").append(name);
  if (!active_.empty()) text += "\n";
  return text;
}

}  // namespace reader
