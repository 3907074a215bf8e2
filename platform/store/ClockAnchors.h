#pragma once

#include <cstdint>

namespace store {

// The clock anchors (tick and UTC) recorded last, by wall clock and by GPS. Decides when a new anchor is due:
// at first, each minute, and after a clock step.
class ClockAnchors {
 public:
  static constexpr std::int64_t kPeriodMs = 60'000;
  static constexpr std::int64_t kCheckMs = 1000;
  static constexpr std::int64_t kSystemStepMs = 250;  // an adjusted clock drifts less between two checks
  static constexpr std::int64_t kGpsStepMs = 1000;    // readings arrive with some delay

  // Whether it is time to read the wall clock.
  bool CheckDue(std::int64_t tick) const { return tick >= nextCheck_ || tick < system_.tick; }

  bool SystemDue(std::int64_t tick, std::int64_t utcMs) {
    nextCheck_ = tick + kCheckMs;
    // While GPS readings arrive, they bring an anchor each minute themselves.
    const std::int64_t periodMs = gpsKnown_ ? 2 * kPeriodMs : kPeriodMs;
    return tick >= system_.tick + periodMs || system_.Deviates(tick, utcMs, kSystemStepMs);
  }
  void RecordedSystem(std::int64_t tick, std::int64_t utcMs) {
    system_ = {tick, utcMs};
    nextCheck_ = tick + kCheckMs;
  }

  bool GpsDue(std::int64_t tick, std::int64_t utcMs) const {
    return !gpsKnown_ || tick >= gps_.tick + kPeriodMs || gps_.Deviates(tick, utcMs, kGpsStepMs);
  }
  void SetGps(std::int64_t tick, std::int64_t utcMs) {
    gps_ = {tick, utcMs};
    gpsKnown_ = true;
  }
  bool GpsKnown() const { return gpsKnown_; }
  std::int64_t GpsUtcAt(std::int64_t tick) const { return gps_.UtcAt(tick); }

  // The ticks restarted and jumped by `distance`; UTC by GPS does not jump.
  void TicksMoved(std::int64_t distance) { gps_.tick += distance; }

 private:
  struct Anchor {
    std::int64_t tick = 0;
    std::int64_t utcMs = 0;

    std::int64_t UtcAt(std::int64_t at) const { return utcMs + (at - tick); }
    bool Deviates(std::int64_t at, std::int64_t utc, std::int64_t limit) const {
      const std::int64_t deviation = utc - UtcAt(at);
      return deviation > limit || deviation < -limit;
    }
  };

  Anchor system_;
  Anchor gps_;
  bool gpsKnown_ = false;
  std::int64_t nextCheck_ = 0;
};

}  // namespace store
