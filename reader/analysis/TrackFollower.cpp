#include "TrackFollower.h"

TrackFollower::Step TrackFollower::Take(const Row& row) {
  if (row.run != run_) {
    run_ = row.run;
    known_ = false;
    broken_ = true;
  }
  tick_ = EventTick(row);
  if (row.table == "bookmark" && row.event == EventKind::kEvent) {
    ++bookmarks_;
    return Step::kBookmark;
  }
  if (LosesFix(row)) broken_ = true;
  GpsFix fix;
  if (!ReadGpsFix(row, fix)) return Step::kNone;
  const bool begins = broken_ || tick_ - lastTick_ > kLongestStepMs;
  known_ = true;
  last_ = fix;
  lastTick_ = tick_;
  // Where a file begins anew it tells the last position again.
  if (row.event == EventKind::kRestated) return Step::kNone;
  broken_ = false;
  return begins ? Step::kBegin : Step::kOn;
}
