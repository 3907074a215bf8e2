#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Messages.h"

namespace reader {

// The files that the paths name: a directory stands for every recording in it ("<name>.NNNNNN.db").
// A path that leads nowhere is complained about.
std::vector<std::string> FindFiles(const std::vector<std::string>& paths, Messages& messages);

// "metadata.000012.db": what stands before the number, and the number; 0 for another name.
std::pair<std::string, std::uint64_t> BaseAndNumber(const std::string& path);

}  // namespace reader
