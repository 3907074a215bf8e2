#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "GpsdConnection.h"
#include "GpsdReports.h"
#include "Receiver.h"

namespace bench {

// Follows a running gpsd: passes on each of its readings when it comes. The fix is lost when gpsd says so,
// when the connection is lost, and after kSilenceMs without a reading.
class GpsdReceiver : public Receiver {
 public:
  static constexpr int kSilenceMs = 5000;

  using Say = std::function<void(const std::string& text)>;

  // `peer` is as GpsdConnection takes it. `say` is called when the gpsd is missing at first, is followed, is
  // gone, and is silent.
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
