#pragma once

#include "Charts.h"
#include "Driven.h"
#include "EventList.h"
#include "Gaps.h"
#include "Losses.h"
#include "RunSummary.h"
#include "StateLanes.h"
#include "TrackFollower.h"
#include "TrackPoints.h"
#include "Video.h"

namespace reader {

// What the page shows of one run, made smaller to what a picture can show: memory does not depend on the
// number of records. Times are milliseconds since the run's first record.
class DriveData {
 public:
  // What of the run is shown.
  struct Part {
    bool isWhole = true;      // else only a stretch of it, or some of its sources
    bool allSources = true;   // so that missing records show
    int bookmarksBefore = 0;  // in runs before
  };

  // The run and its summary must outlive it.
  DriveData(const Run& run, const RunSummary& summary, Part part);

  // Of every record of the run, with its text, in their order: to be shown, or not.
  void Add(const Row& row);
  void Skip(const Row& row);

  void Show(const Videos& videos) { videos_ = videos; }

  bool Any() const { return records_ > 0; }
  int Bookmarks() const { return events_.Bookmarks(); }
  // One object.
  void Write(JsonWriter& json) const;

 private:
  static constexpr std::size_t kMostSources = 500;

  void Begin(std::int64_t ms);
  // Null where it is not known.
  const GpsFix* Place() const;
  void FollowClock(std::int64_t ms, std::int64_t utcMs);
  void FollowRecording(const Row& row);
  void WriteAbout(JsonWriter& json) const;
  void WriteVideos(JsonWriter& json) const;
  void WriteSources(JsonWriter& json) const;

  const Run& run_;
  const RunSummary& summary_;
  Part part_;
  RunClock clock_;
  TrackFollower follower_;
  Driven driven_;
  TrackPoints track_;
  Charts charts_;
  StateLanes lanes_;
  EventList events_;
  Gaps gaps_;
  Losses losses_;
  Videos videos_;
  std::optional<std::int64_t> recordingMs_;  // the first start of a recording
  std::int64_t records_ = 0;
  std::int64_t beginMs_ = 0;
  std::int64_t endMs_ = 0;
  std::int64_t offsetMs_ = kNoUtc;  // UTC of the first tick, by the last record
};

}  // namespace reader
