#pragma once

#include <chrono>
#include <string>

#include "GpsdConnection.h"
#include "GpsdReports.h"
#include "Receiver.h"

// Follows a running gpsd: each of its readings is one here, when it comes. A fix is lost when gpsd says
// so, when the connection is, and when nothing comes for kSilenceMs.
class GpsdReceiver : public Receiver {
 public:
  static constexpr int kSilenceMs = 5000;

  // As GpsdConnection takes it.
  explicit GpsdReceiver(const std::string& peer) : peer_(peer), connection_(peer) {}

  void BeginAt(double /*driveSeconds*/) override {}
  int MsToNext(double /*driveSeconds*/, double /*speed*/) const override { return kLookEveryMs; }
  bool Next(double driveSeconds, GpsStatusItem& item) override;

 private:
  using Clock = std::chrono::steady_clock;

  static constexpr int kLookEveryMs = 20;

  bool Lose(GpsStatusItem& item, const char* why);

  const std::string peer_;
  GpsdConnection connection_;
  GpsdReports reports_;
  Clock::time_point lastReading_;
};
