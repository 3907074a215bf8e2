#pragma once

#include <string>
#include <vector>

// Two lists that should be the same.
struct Compared {
  std::string what;
  bool expected;  // rows: the drive has such events
  std::vector<std::string> sent;
  std::vector<std::string> recorded;
};

// Compares the events in a recording with the lists of what the bench sent (DIR/sent): for each kind of
// record, its values and the sender's tick, in order. A recording that is under way may be read.
std::vector<Compared> CompareSentWithRecorded(const std::string& sentDirectory, const std::string& recording);

// Values of what was sent by sources that match a glob pattern: `sql` reads `event`, the lines of these
// sources (id, source, f: their values as JSON), and tells two numbers before the values, by which they are
// ordered.
std::vector<std::string> SentValues(const std::string& sentDirectory, const std::string& sources,
                                    const std::string& sql);

// What a recording tells, without ticks and times, by source; without the sources whose readings depend
// on the time at which they are taken.
std::vector<std::string> TimelineWithoutReadings(const std::string& recording);
