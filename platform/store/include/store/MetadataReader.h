#pragma once

#include <string>

class Watchdog;

// Copies stored metadata.
class MetadataReader {
 public:
  // Copies what the store at the base path `source`, which is open in this process, has recorded in
  // its current run from the system tick `first` until `last`, both included, into a new recording at
  // the absolute path `destination`. The copy stands alone and has all that was reported before; see
  // docs/store.md.
  //
  // `first` 0: from the beginning of the run; `last` 0xFFFFFFFF: to its end. A `first` above `last`
  // crosses the wrap of the ticks. Where a tick has come several times the newest one is meant.
  //
  // True when the copy is durable. Otherwise nothing stands there that did not before: something is at
  // the destination already, no file can be made or filled there, its name is one of the recordings',
  // the store is not open or cannot write what is pending, a recording cannot be read, or the range
  // lies beside the run.
  //
  // Takes about half a second for a million records; `watchdog`, where not null, is petted meanwhile.
  bool ReadToNewFile(const std::string& source, const std::string& destination, unsigned int first,
                     unsigned int last, Watchdog* watchdog);
};
