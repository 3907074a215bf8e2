#pragma once

#include <string>

namespace bench {

// Reads a whole file. Returns false when it cannot be read.
bool ReadTextFile(const std::string& path, std::string& text);

}  // namespace bench
