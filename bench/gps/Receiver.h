#pragma once

#include <functional>
#include <memory>
#include <string>

#include "items/GpsStatusItem.h"

namespace bench {

// A GPS receiver that the bench's GpsHal follows instead of its built-in track.
class Receiver {
 public:
  virtual ~Receiver() = default;

  // The drive begins, or this process joins it at that time of the drive.
  virtual void BeginAt(double driveSeconds) = 0;

  // Maximum milliseconds until Next must be called, in a drive that runs `speed` times faster than the clock;
  // -1: no more readings.
  virtual int MsToNext(double driveSeconds, double speed) const = 0;

  // Puts the next due reading into `item`, which holds the last reading; the tick stays. Returns false when
  // no reading is due. Never blocks. Before the drive `driveSeconds` is negative.
  virtual bool Next(double driveSeconds, GpsStatusItem& item) = 0;

  // Whether all readings were returned.
  virtual bool AtEnd() const { return false; }
};

// The receiver that the environment names; null: none. It reports events to `say`, from the first Next on.
std::unique_ptr<Receiver> MakeReceiver(std::function<void(const std::string& text)> say);

// The path of an NMEA 0183 log. With the second variable set the drive ends with the log.
constexpr const char* kNmeaVariable = "BENCH_NMEA";
constexpr const char* kNmeaEndsDriveVariable = "BENCH_NMEA_ENDS_DRIVE";
// A running gpsd: "PORT ADDRESS ADDRESS...", all numeric.
constexpr const char* kGpsdVariable = "BENCH_GPSD";

}  // namespace bench
