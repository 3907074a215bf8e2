#pragma once

#include <string>

// The whole of a file; false when it cannot be read.
bool ReadTextFile(const std::string& path, std::string& text);
