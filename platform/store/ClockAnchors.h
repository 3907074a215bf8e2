#pragma once

#include <cstdint>

namespace store {

// Decides when the relation between tick and wall clock is to be recorded: at first, each minute,
// and whenever the wall clock was set.
class ClockAnchors {
 public:
  static constexpr std::int64_t kPeriodMs = 60'000;
  static constexpr std::int64_t kCheckMs = 1000;
  static constexpr std::int64_t kStepMs = 250;  // an adjusted clock drifts less between two checks

  // False as long as there is no need to read the wall clock.
  bool CheckDue(std::int64_t tick) const { return tick >= nextCheck_ || tick < tick_; }

  // True when an anchor is to be recorded, which is then taken as recorded.
  bool Check(std::int64_t tick, std::int64_t utcMs) {
    nextCheck_ = tick + kCheckMs;
    const std::int64_t deviation = (utcMs - utcMs_) - (tick - tick_);
    const bool step = deviation > kStepMs || deviation < -kStepMs;
    if (!step && tick < tick_ + kPeriodMs) return false;
    Recorded(tick, utcMs);
    return true;
  }

  void Recorded(std::int64_t tick, std::int64_t utcMs) {
    tick_ = tick;
    utcMs_ = utcMs;
    nextCheck_ = tick + kCheckMs;
  }

 private:
  std::int64_t tick_ = 0;
  std::int64_t utcMs_ = 0;
  std::int64_t nextCheck_ = 0;
};

}  // namespace store
