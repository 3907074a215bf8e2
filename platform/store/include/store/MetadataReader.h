#pragma once

#include <string>

class Watchdog;

// Copies stored metadata.
class MetadataReader {
 public:
  // Copies the records of the store at the base path `source` whose ticks lie between `first` and
  // `last`, both included, into a new file. `watchdog`, where not null, is petted meanwhile. True on
  // success.
  //
  // Not served yet: always false, and nothing is written.
  bool ReadToNewFile(const std::string& source, const std::string& destination, unsigned int first,
                     unsigned int last, Watchdog* watchdog);
};
