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

// The data of one run for the page, reduced to what a picture can show: memory use does not depend on the
// number of records. Times are milliseconds since the run's first record.
class DriveData {
 public:
  // The shown part of the run.
  struct Part {
    bool isWhole = true;      // false: a range of time, or some sources
    bool allSources = true;   // missing numbers are missing records
    int bookmarksBefore = 0;  // in earlier runs
  };

  // `run` and `summary` must outlive the object.
  DriveData(const Run& run, const RunSummary& summary, Part part);

  // Call one of these for every record of the run, in order, with Row::text filled: Add shows it, Skip does
  // not.
  void Add(const Row& row);
  void Skip(const Row& row);

  void Show(const Videos& videos) { videos_ = videos; }

  bool Any() const { return records_ > 0; }
  int Bookmarks() const { return events_.Bookmarks(); }
  // Writes one object.
  void Write(JsonWriter& json) const;

 private:
  static constexpr std::size_t kMostSources = 500;

  void Begin(std::int64_t ms);
  // Current position; null if unknown.
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
  std::optional<std::int64_t> recordingMs_;  // first record start
  std::int64_t records_ = 0;
  std::int64_t beginMs_ = 0;
  std::int64_t endMs_ = 0;
  std::int64_t offsetMs_ = kNoUtc;  // UTC of the run's first record, from the last shown record
};

}  // namespace reader
