#pragma once

#include <cstddef>
#include <string>

#include "NmeaLog.h"
#include "Receiver.h"

// Plays a log in its own time, which begins with the drive.
class NmeaReceiver : public Receiver {
 public:
  // A file that cannot be read is logged, and tells nothing.
  explicit NmeaReceiver(const std::string& path);

  // One that joins later leaves out what was due before.
  void BeginAt(double driveSeconds) override;
  int MsToNext(double driveSeconds, double speed) const override;
  bool Next(double driveSeconds, GpsStatusItem& item) override;
  bool AtEnd() const override { return next_ == log_.readings.size(); }

 private:
  double SecondsOfNext() const { return static_cast<double>(log_.readings[next_].atMs) / 1000; }

  NmeaLog log_;
  std::size_t next_ = 0;
};
