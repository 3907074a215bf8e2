#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace reader {

// A video that the page shows beside a run. The page links to the file and does not embed it.
struct Video {
  std::string file;           // path relative to the page, or absolute
  std::int64_t offsetMs = 0;  // start of the video, after the run's first record start
};
using Videos = std::vector<Video>;

}  // namespace reader
