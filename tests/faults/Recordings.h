#pragma once

#include <string>

#include "Usage.h"
#include "support/TempDir.h"

// All the recordings in a directory, held against what was reported.
class Recordings {
 public:
  explicit Recordings(const TempDir& dir, const std::string& exceptFor = "");

  std::size_t Files() const { return files_; }

  // Empty, or what is wrong with a file.
  const std::string& Fault() const { return fault_; }

  // How many numbers up to the last are neither recorded nor counted as lost; below 0: some are there twice.
  long Holes() const { return last_ - records_ - lostInAll_; }
  // Of those reported for a table the ones that are not recorded, and those counted as lost (which
  // can be restated ones, too).
  long Missing(const Usage& usage, const std::string& table) const {
    return usage.Reported(table) - Of(table, recorded_);
  }
  long Lost(const std::string& table) const { return Of(table, lost_); }
  long Lost() const { return lostInAll_; }

 private:
  void Read(const std::string& path);

  std::size_t files_ = 0;
  std::string fault_;
  long last_ = 0;
  long records_ = 0;
  Counts recorded_;  // without the restated ones
  Counts lost_;
  long lostInAll_ = 0;
};
