#pragma once

#include <set>
#include <string>

#include "support/TempDir.h"

// Runs `cmake --install` into its own scratch root.
class Installation {
 public:
  Installation();

  std::string Path(const std::string& path) const { return root_.Path("root" + path); }
  std::string Read(const std::string& path) const { return root_.Read("root" + path); }
  const std::string& Problem() const { return problem_; }

  // The paths of all installed files. Each begins with "/".
  std::set<std::string> Files() const;
  // The first value of a setting in the unit.
  std::string Unit(const std::string& setting) const;

 private:
  TempDir root_;
  std::string problem_;
};
