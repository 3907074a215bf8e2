#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "Messages.h"
#include "Video.h"

namespace reader {

// --video FILE[=OFFSET], once for each camera.
class VideoOption {
 public:
  void Declare(CLI::App& app);
  bool Any() const { return !given_.empty(); }
  // Returns the videos with paths relative to the directory of the file `page` (empty or "-": the current
  // directory). Reports a problem and returns nothing if a video does not exist or an offset is not a number.
  std::optional<Videos> Find(const std::string& page, Messages& messages) const;

 private:
  std::vector<std::string> given_;
};

}  // namespace reader
