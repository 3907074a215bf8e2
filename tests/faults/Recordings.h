#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Usage.h"
#include "support/TempDir.h"

// All the recordings in a directory, held against what was reported.
class Recordings {
 public:
  explicit Recordings(const TempDir& dir, const std::string& exceptFor = "");

  std::size_t Files() const { return files_.size(); }

  // Empty, or what is wrong: a file that is not sound, a record that is there twice.
  std::string Fault();

  // How many numbers up to the last are neither recorded nor counted as lost.
  long Holes();
  // Of those reported for a table the ones that are not recorded, and those counted as lost (which
  // can be restated ones, too).
  long Missing(const std::vector<Report>& reports, const std::string& table);
  long Lost(const std::string& table);
  long Lost() { return Sum("SELECT coalesce(sum(count),0) FROM loss"); }

 private:
  long Sum(const std::string& sql);

  std::vector<std::unique_ptr<Connection>> files_;
};
