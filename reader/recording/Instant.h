#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Row.h"
#include "Runs.h"

namespace reader {

// A moment as people write it:
//   123456                    an arrival tick, in each run
//   2024-05-01T12:00:00Z      UTC; a date alone means its midnight; +02:00 in place of Z gives the zone
//   record-start, bookmark:2  an event, here the second bookmark of all runs; InstantFooter lists the events
// An event may have an offset: "crash-30s", "bookmark:2+1.5m" (ms, s, m, h).
struct Instant {
  enum class Kind { kTick, kUtc, kEvent };
  Kind kind = Kind::kTick;
  std::int64_t value = 0;  // tick or UTC in milliseconds
  std::string event;
  int count = 1;  // number of the event, from 1
  std::int64_t distanceMs = 0;
  std::string said;
};

// Returns false and sets `error` if the text is not an instant.
bool ReadInstant(const std::string& text, Instant& instant, std::string& error);
std::string InstantHelp();
// The same for the end of a help text, as lines that begin "T is", with all events.
std::string InstantFooter();
std::vector<std::string> EventNames();

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
