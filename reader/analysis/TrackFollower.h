#pragma once

#include "Freshness.h"
#include "GpsFix.h"

namespace reader {

// The way of the vehicle, as the records of gps, gps_state and bookmark tell it one after the other.
class TrackFollower {
 public:
  enum class Step {
    kNone,
    kBegin,  // a position; how the vehicle came there is not known
    kOn,     // the next position
    kBookmark,
  };

  Step Take(const Row& row) { return Take(row, ReadGps(row)); }
  // The same where the record is decoded already.
  Step Take(const Row& row, const GpsReading& reading);
  // The way is not known from here to the next position.
  void Break() { broken_ = true; }

  // Where the vehicle was last in this run; null before that is known.
  const GpsFix* Last() const { return known_ ? &last_ : nullptr; }
  // How old that is at the record taken last, which may be a little before it.
  std::int64_t AgeMs() const { return tick_ - lastTick_; }
  // How long nothing was heard of the receiver at the record taken last; 0 while the position counts.
  std::int64_t SilentMs() const { return freshness_.SilentMs(tick_); }
  // How many of them there were in all runs; so "bookmark:2" is told from others.
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
