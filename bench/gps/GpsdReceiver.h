#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "GpsdConnection.h"
#include "GpsdReports.h"
#include "Receiver.h"

namespace bench {

// Follows a running gpsd and passes on each reading as it arrives. The fix is lost when gpsd reports no fix,
// when the connection is lost, and after kSilenceMs without a reading.
class GpsdReceiver : public Receiver {
 public:
  static constexpr int kSilenceMs = 5000;

  using Say = std::function<void(const std::string& text)>;

  // `peer` has the format of GpsdConnection. `say` reports a gpsd that is missing at the start, connected,
  // disconnected, or silent.
  GpsdReceiver(const std::string& peer, Say say) : say_(std::move(say)), connection_(peer) {}

  void BeginAt(double /*driveSeconds*/) override {}
  int MsToNext(double /*driveSeconds*/, double /*speed*/) const override { return kLookEveryMs; }
  bool Next(double driveSeconds, GpsStatusItem& item) override;

 private:
  using Clock = std::chrono::steady_clock;

  static constexpr int kLookEveryMs = 20;

  bool Lose(GpsStatusItem& item, const char* why);

  const Say say_;
  bool missingSaid_ = false;
  GpsdConnection connection_;
  GpsdReports reports_;
  Clock::time_point lastReading_;
};

}  // namespace bench
