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
  // The videos as a page refers to them that is written to the file `page` (empty or "-": to the current
  // directory). Nothing, after a problem was said, if a video does not exist or an offset is no number.
  std::optional<Videos> Find(const std::string& page, Messages& messages) const;

 private:
  std::vector<std::string> given_;
};

}  // namespace reader
