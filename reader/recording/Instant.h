#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace reader {

// A moment as people write it:
//   123456                    an arrival tick, in each run
//   2024-05-01T12:00:00Z      UTC; a date alone means its midnight; +02:00 in place of Z gives the zone
//   record-start, bookmark:2  an event, here the second bookmark of all runs; InstantFooter lists the events
// An event may have an offset: "crash-30s", "bookmark:2+1.5m" (ms, s, m, h).
struct Instant {
  enum class Kind { kTick, kUtc, kEvent };
  static constexpr int kAnyActive = -1;
  Kind kind = Kind::kTick;
  std::int64_t value = 0;   // tick or UTC in milliseconds
  const char* source = "";  // of the event
  int active = kAnyActive;  // its value
  int count = 1;            // its number, from 1
  std::int64_t distanceMs = 0;
  std::string said;
};

// Returns false and sets `error` if the text is not an instant.
bool ReadInstant(const std::string& text, Instant& instant, std::string& error);
// Says that a number seems to count from 1970, and how to write that time.
std::string EpochHint(const std::string& text, std::int64_t utcMs);
std::string InstantHelp();
// The same for the end of a help text, as lines that begin "T is", with all events.
std::string InstantFooter();
std::vector<std::string> EventNames();

}  // namespace reader
