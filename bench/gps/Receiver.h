#pragma once

#include <memory>

#include "items/GpsStatusItem.h"

// A GPS receiver that the bench's GpsHal follows, in place of the track that it drives by itself.
class Receiver {
 public:
  virtual ~Receiver() = default;

  // The drive begins, or this process joins it at that time of it, in seconds.
  virtual void BeginAt(double driveSeconds) = 0;

  // How many milliseconds to wait at most before Next is asked again, at a drive that runs so many
  // times faster; -1: nothing comes any more.
  virtual int MsToNext(double driveSeconds, double speed) const = 0;

  // Puts the next reading that is due into `item`, which holds the last one; its tick is not touched.
  // False when there is none now. Never blocks. Before the drive the time is negative.
  virtual bool Next(double driveSeconds, GpsStatusItem& item) = 0;

  // All has been told.
  virtual bool AtEnd() const { return false; }
};

// The one that the environment names; null: none.
std::unique_ptr<Receiver> MakeReceiver();

// The path of an NMEA 0183 log; with the second variable set its end ends the drive.
constexpr const char* kNmeaVariable = "BENCH_NMEA";
constexpr const char* kNmeaEndsDriveVariable = "BENCH_NMEA_ENDS_DRIVE";
// A running gpsd: "PORT ADDRESS ADDRESS..." in numbers.
constexpr const char* kGpsdVariable = "BENCH_GPSD";
