#pragma once

// The system tick: milliseconds since boot, including suspended time, in 32 bits. Wraps after about 49.7
// days.
class Systick {
 public:
  static constexpr unsigned int kUnavailable = 0xFFFFFFFFU;

  // Returns the current tick, or kUnavailable when the clock cannot be read. A real tick is never
  // kUnavailable: the last millisecond before the wrap returns one less.
  unsigned int SystemTick() const;
};
