#pragma once

#include <cstdint>
#include <deque>

#include "ComparedRows.h"

namespace reader {

// How much later the ticks of run B are than those of run A.
struct TickShift {
  std::uint32_t sender = 0;  // modulo 2^32
  std::int64_t arrivalMs = 0;
};

// Finds the shift from the first records of both runs: the most frequent difference of the sender ticks, the
// median difference of the arrival ticks.
TickShift FindTickShift(const std::deque<ComparedRow>& a, const std::deque<ComparedRow>& b);

}  // namespace reader
