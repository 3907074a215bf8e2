#pragma once

#include <functional>
#include <vector>

#include "DriveClock.h"
#include "Readings.h"

namespace bench {

// When the readings of a server are due. They are due at multiples of their interval, so that each run of a
// drive has the same readings.
class Schedule {
 public:
  // `clock` must outlive the schedule.
  explicit Schedule(const DriveClock& clock) : clock_(clock) {}

  // Sets the readings per second of the drive; 0: none.
  void SetRate(const Reading& reading, double perSecond);
  // The drive has begun.
  void Begin();

  // Milliseconds until the next reading is due; -1: no reading is due.
  int MsToNext() const;
  // Calls `send` for each due reading, with the time of the drive at which it was due.
  using Send = std::function<void(const Reading& reading, const Advance& advance, double driveSeconds)>;
  void SendDue(const Send& send);

 private:
  struct Row {
    const Reading* reading;
    Advance advance;
    double perSecond = 0;
    double nextSecond = 0;
  };

  void Align(Row& row) const;

  const DriveClock& clock_;
  std::vector<Row> rows_;
};

}  // namespace bench
