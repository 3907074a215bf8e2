#pragma once

#include <string>

namespace reader {

// The page of a report, before and after its data, a JSON array of runs. The page may load nothing from
// outside; with `videos` it may load videos from its own origin and from local files.
std::string ReportHead(bool videos);
std::string ReportTail();

}  // namespace reader
