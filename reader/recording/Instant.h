#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Row.h"
#include "Runs.h"

namespace reader {

// A moment as people name it:
//   123456                    an arrival tick, in each run
//   2024-05-01T12:00:00Z      UTC; the date alone is its midnight; +02:00 in place of Z: of that zone
//   record-start, bookmark:2  an event, the second of all runs given; InstantHelp names all
// Behind an event may stand a distance: "crash-30s", "bookmark:2+1.5m" (ms, s, m, h).
struct Instant {
  enum class Kind { kTick, kUtc, kEvent };
  Kind kind = Kind::kTick;
  std::int64_t value = 0;  // tick or UTC in milliseconds
  std::string event;       // its name
  int count = 1;           // which one
  std::int64_t distanceMs = 0;
  std::string said;
};

// False and why not.
bool ReadInstant(const std::string& text, Instant& instant, std::string& error);
std::string InstantHelp();
std::vector<std::string> EventNames();

// Where an instant is in the records.
struct Position {
  enum class By { kTick, kUtc, kSeq };
  By by = By::kTick;
  int run = 0;  // 0: in every run
  std::int64_t value = 0;
  std::int64_t tick = 0;        // for kSeq: of that record
  std::int64_t utcMs = kNoUtc;  // where it is known

  // Less than 0 for records before it, 0 at it.
  int Compare(const Row& row) const;
  // How long before it the record was; negative for one behind it.
  std::int64_t AgeMs(const Row& row) const;
  // Whether it is behind another one, as far as the two can be compared.
  bool IsAfter(const Position& other) const;
};

// Nothing, and a problem, when there is no such event.
std::optional<Position> Resolve(const Instant& instant, const std::vector<Run>& runs, Messages& messages);

// Records from one position to another, both included.
struct Range {
  std::optional<Position> from;
  std::optional<Position> to;

  bool Contains(const Row& row) const {
    return (!from || from->Compare(row) >= 0) && (!to || to->Compare(row) <= 0);
  }
};

}  // namespace reader
