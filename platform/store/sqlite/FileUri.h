#pragma once

#include <string>

namespace store {

// The path as a URI for SQLite, followed by `parameters` such as "?mode=ro".
std::string FileUri(const std::string& path, const std::string& parameters);

}  // namespace store
