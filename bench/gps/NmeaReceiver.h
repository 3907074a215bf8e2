#pragma once

#include <cstddef>
#include <string>

#include "NmeaLog.h"
#include "Receiver.h"

namespace bench {

// Plays a log at its own pace, from the begin of the drive.
class NmeaReceiver : public Receiver {
 public:
  // When the file cannot be read, logs it and has no readings.
  explicit NmeaReceiver(const std::string& path);

  // Skips the readings before that time.
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
