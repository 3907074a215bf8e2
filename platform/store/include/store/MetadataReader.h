#pragma once

#include <string>

class Watchdog;

// Copies stored metadata.
class MetadataReader {
 public:
  // Copies a range of the current run into a new recording at the absolute path `destination`. `source` is
  // the base path of a store that is open in this process. The range goes from system tick `first` to `last`,
  // both included. The copy includes records that still wait in memory, and stands alone (docs/store.md).
  //
  // `first` 0 means the beginning of the run, `last` 0xFFFFFFFF its end. If `first` is above `last`, the
  // range crosses the wrap of the ticks. If a tick came several times, the newest counts.
  //
  // True once the copy is durable. False, and no new file, if the destination exists, has a recording's name,
  // or cannot be created or filled; if the store is not open or cannot commit; if a recording cannot be read;
  // or if the range lies outside the run.
  //
  // Takes about half a second for a million records. Pets `watchdog` meanwhile, unless it is null.
  bool ReadToNewFile(const std::string& source, const std::string& destination, unsigned int first,
                     unsigned int last, Watchdog* watchdog);
};
