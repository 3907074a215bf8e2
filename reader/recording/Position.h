#pragma once

#include <optional>
#include <vector>

#include "Instant.h"
#include "Row.h"
#include "Runs.h"

namespace reader {

// The place of an instant among the records.
struct Position {
  enum class By { kTick, kUtc, kSeq };
  By by = By::kTick;
  int run = 0;  // 0: in every run
  std::int64_t value = 0;
  std::int64_t tick = 0;  // for kSeq: the record's tick
  std::int64_t utcMs = kNoUtc;

  // Negative if the row is before this position, 0 at it, positive after it.
  int Compare(const Row& row) const;
  // Time from the row to this position; negative if the row is later.
  std::int64_t AgeMs(const Row& row) const;
  // Whether this position is later; false if the two cannot be compared.
  bool IsAfter(const Position& other) const;
};

// Reports a problem and returns nothing if the event is not recorded, or if a tick is clearly a Unix time.
std::optional<Position> Resolve(const Instant& instant, const std::vector<Run>& runs, Messages& messages);

// Records between two positions, both inclusive.
struct Range {
  std::optional<Position> from;
  std::optional<Position> to;

  bool Contains(const Row& row) const {
    return (!from || from->Compare(row) >= 0) && (!to || to->Compare(row) <= 0);
  }
};

}  // namespace reader
