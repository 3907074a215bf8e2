#include "TrackFollower.h"

namespace reader {

TrackFollower::Step TrackFollower::Take(const Row& row, const GpsReading& reading) {
  if (row.run != run_) {
    run_ = row.run;
    known_ = false;
    broken_ = true;
    freshness_ = {};
  }
  tick_ = EventTick(row);
  if (row.table == "bookmark" && row.event == EventKind::kEvent) {
    ++bookmarks_;
    return Step::kBookmark;
  }
  if (reading.losesFix) broken_ = true;
  const bool isSilent = freshness_.SilentMs(tick_) > 0;
  if (row.table == "gps" && row.event != EventKind::kRestated) freshness_.Add(tick_);
  if (!reading.hasFix) return Step::kNone;
  const bool begins = broken_ || isSilent;
  known_ = true;
  last_ = reading.fix;
  lastTick_ = tick_;
  // A restated record repeats the last position, so the vehicle has not moved.
  if (row.event == EventKind::kRestated) return Step::kNone;
  broken_ = false;
  return begins ? Step::kBegin : Step::kOn;
}

}  // namespace reader
