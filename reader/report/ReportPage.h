#pragma once

#include <string>

namespace reader {

// The page of a report: what stands before its data, an array of runs in JSON, and behind it. The page
// loads nothing; with `videos` it may load videos from its own place.
std::string ReportHead(bool videos);
std::string ReportTail();

}  // namespace reader
