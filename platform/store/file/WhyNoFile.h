#pragma once

#include <string>

namespace store {

// The reason why no recording can be made at this path, for the log. Tries what making one needs, on a file
// without a name.
const char* WhyNoFile(const std::string& path);

}  // namespace store
