#pragma once

#include <cstddef>
#include <string>

#include "NmeaLog.h"
#include "Receiver.h"

namespace bench {

// Plays a log in its own time, which begins with the drive.
class NmeaReceiver : public Receiver {
 public:
  // A file that cannot be read is logged; the receiver then has no readings.
  explicit NmeaReceiver(const std::string& path);

  // Leaves out the readings that were due before.
  void BeginAt(double driveSeconds) override;
  int MsToNext(double driveSeconds, double speed) const override;
  bool Next(double driveSeconds, GpsStatusItem& item) override;
  bool AtEnd() const override { return next_ == log_.readings.size(); }

 private:
  double SecondsOfNext() const { return static_cast<double>(log_.readings[next_].atMs) / 1000; }

  NmeaLog log_;
  std::size_t next_ = 0;
};

}  // namespace bench
