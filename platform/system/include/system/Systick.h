#pragma once

// The system tick: milliseconds since boot, suspended time included, in 32 bits; it wraps after
// about 49.7 days.
class Systick {
 public:
  static constexpr unsigned int kUnavailable = 0xFFFFFFFFU;

  // The current tick, or kUnavailable when the clock cannot be read. A real tick is never
  // kUnavailable: the millisecond before the wrap reads one lower.
  unsigned int SystemTick() const;
};
