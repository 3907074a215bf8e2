#pragma once

#include <functional>
#include <memory>
#include <string>

#include "items/GpsStatusItem.h"

namespace bench {

// A GPS receiver that the bench's GpsHal follows, in place of the track that it drives by itself.
class Receiver {
 public:
  virtual ~Receiver() = default;

  // The drive begins, or this process joins it at this time of the drive.
  virtual void BeginAt(double driveSeconds) = 0;

  // Milliseconds until Next is called again, at most, in a drive that runs `speed` times faster; -1: no
  // reading comes any more.
  virtual int MsToNext(double driveSeconds, double speed) const = 0;

  // Puts the next due reading into `item`, which holds the last one; the tick is unchanged. False when none
  // is due. Never blocks. Before the drive the time is negative.
  virtual bool Next(double driveSeconds, GpsStatusItem& item) = 0;

  // All readings are through.
  virtual bool AtEnd() const { return false; }
};

// The receiver that the environment names; null: none. It tells people through `say`, from the first Next on.
std::unique_ptr<Receiver> MakeReceiver(std::function<void(const std::string& text)> say);

// The path of an NMEA 0183 log. With the second variable set the drive ends with the log.
constexpr const char* kNmeaVariable = "BENCH_NMEA";
constexpr const char* kNmeaEndsDriveVariable = "BENCH_NMEA_ENDS_DRIVE";
// A running gpsd: "PORT ADDRESS ADDRESS..." in numbers.
constexpr const char* kGpsdVariable = "BENCH_GPSD";

}  // namespace bench
