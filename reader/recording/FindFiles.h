#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Messages.h"

namespace reader {

// The files that the paths name, sorted by base and number. A directory stands for every recording in it
// ("<name>.NNNNNN.db"). A missing path is reported as a problem.
std::vector<std::string> FindFiles(const std::vector<std::string>& paths, Messages& messages);

// Splits "metadata.000012.db" into the base before the number, and the number. Other names return number 0.
std::pair<std::string, std::uint64_t> BaseAndNumber(const std::string& path);

}  // namespace reader
