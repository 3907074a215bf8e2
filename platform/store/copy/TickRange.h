#pragma once

#include <cstdint>
#include <limits>

namespace store {

// A stretch of a run in extended ticks, both ends included; the limits of the type are open ends.
struct TickRange {
  static constexpr std::int64_t kFromBeginning = std::numeric_limits<std::int64_t>::min();
  static constexpr std::int64_t kToEnd = std::numeric_limits<std::int64_t>::max();

  std::int64_t from = kFromBeginning;
  std::int64_t to = kToEnd;

  bool Empty() const { return from > to; }
};

// The stretch that two 32-bit ticks mean in a run that has lasted from `begin` until `end`: 0 is its
// beginning, 0xFFFFFFFF its end, a first one above the last crosses the wrap. Where a tick has come
// several times the newest one is meant. Empty when the stretch lies beside the run.
TickRange RangeOf(std::uint32_t first, std::uint32_t last, std::int64_t begin, std::int64_t end);

}  // namespace store
