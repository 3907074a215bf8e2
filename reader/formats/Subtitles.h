#pragma once

#include <map>
#include <string>
#include <vector>

#include "Freshness.h"
#include "Position.h"
#include "RowFormat.h"
#include "TrackFollower.h"
#include "Utc.h"

namespace reader {

constexpr const char* kSubtitleSources =
    "gps,speed-radar,radar,inputs,recording,covert,crash,bookmark,clock,run";

// SubRip subtitles for a video: one cue for each second, with the values at its start and the bookmarks set
// in it.
class Subtitles : public RowFormat {
 public:
  // `begin` is the start of the video.
  explicit Subtitles(const Position& begin) : begin_(begin) {}
  void Append(const Row& row, std::string& out) override;
  void Skip(const Row& row) override;
  void End(std::string& out) override;

 private:
  // SubRip times have two digits for hours.
  static constexpr std::int64_t kLastCue = 100 * 3600 - 2;
  static constexpr std::int64_t kCueMs = 1000;

  bool Enter(const Row& row);
  void BeginRun(int run);
  void FindBegin(const Row& row);
  void Take(const Row& row);
  void TakeFix(const Row& row);
  void TakeRadar(const Row& row);
  void Advance(std::int64_t ms, std::string& out);
  void FinishCue(std::string& out);
  std::string StateText() const;
  std::string SpeedText(std::int64_t tick) const;
  std::string RadarText(std::int64_t tick) const;

  Position begin_;
  int run_ = 0;
  bool begun_ = false;
  bool writing_ = false;
  bool over_ = false;
  std::int64_t beginTick_ = 0;
  std::int64_t utcOffsetMs_ = kNoUtc;  // UTC minus tick

  // The current values.
  bool known_ = false;
  bool hasFix_ = false;
  GpsFix fix_;
  Freshness gpsFreshness_;
  struct Radar {
    std::string reading;
    Freshness freshness;
  };
  std::map<std::string, Radar> radars_;  // by source, without invalid ones
  std::vector<std::string> active_;      // active signals, the oldest first

  // The current cue.
  std::int64_t nextCue_ = 0;
  std::string cue_;
  std::string bookmarksText_;
  int bookmarks_ = 0;
  int cues_ = 0;
};

}  // namespace reader
