#pragma once

#include "Freshness.h"
#include "GpsFix.h"

namespace reader {

// Follows the vehicle's track through the records of gps, gps_state and bookmark, taken in order.
class TrackFollower {
 public:
  enum class Step {
    kNone,
    kBegin,  // first position after a break
    kOn,     // next position of the same track
    kBookmark,
  };

  Step Take(const Row& row) { return Take(row, ReadGps(row)); }
  // Same, for a record that is already decoded.
  Step Take(const Row& row, const GpsReading& reading);
  // Breaks the track: the next position begins a new one.
  void Break() { broken_ = true; }

  // Last position in this run; null before the first one.
  const GpsFix* Last() const { return known_ ? &last_ : nullptr; }
  // Age of that position at the last record; slightly negative when sender ticks are out of order.
  std::int64_t AgeMs() const { return tick_ - lastTick_; }
  // Time without GPS records, at the last record; 0 while the position is valid.
  std::int64_t SilentMs() const { return freshness_.SilentMs(tick_); }
  // Number of bookmarks so far, in all runs; numbers bookmarks as "bookmark:2" does.
  int Bookmarks() const { return bookmarks_; }

 private:
  int run_ = 0;
  bool known_ = false;
  bool broken_ = true;
  Freshness freshness_;
  GpsFix last_;
  std::int64_t lastTick_ = 0;
  std::int64_t tick_ = 0;
  int bookmarks_ = 0;
};

}  // namespace reader
