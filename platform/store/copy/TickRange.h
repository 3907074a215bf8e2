#pragma once

#include <cstdint>
#include <limits>

namespace store {

// A range of a run in 64-bit ticks, both ends included. The limits of the type are open ends.
struct TickRange {
  static constexpr std::int64_t kFromBeginning = std::numeric_limits<std::int64_t>::min();
  static constexpr std::int64_t kToEnd = std::numeric_limits<std::int64_t>::max();

  std::int64_t from = kFromBeginning;
  std::int64_t to = kToEnd;

  bool Empty() const { return from > to; }
};

// The range that two 32-bit ticks mean in a run from `begin` to `end`. `first` 0 is the beginning of the run,
// `last` 0xFFFFFFFF its end. If `first` is above `last`, the range crosses the wrap. If a tick came several
// times, the newest counts. Empty if the range lies outside the run.
TickRange RangeOf(std::uint32_t first, std::uint32_t last, std::int64_t begin, std::int64_t end);

}  // namespace store
