#pragma once

#include <string>

namespace store {

// Why no recording can be created at this path, for the log. Tries the same steps on an unnamed file.
const char* WhyNoFile(const std::string& path);

}  // namespace store
