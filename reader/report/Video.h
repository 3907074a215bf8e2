#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace reader {

// A video that the page shows beside a run. The page refers to the file and never holds it.
struct Video {
  std::string file;           // as seen from the page: a relative path, or an absolute one
  std::int64_t offsetMs = 0;  // its first picture, after the first start of a recording in the run
};
using Videos = std::vector<Video>;

}  // namespace reader
