#pragma once

#include <string>

namespace reader {

// SQL that makes a table tag_name of this connection alone, with the names and texts of the tags that the
// store's format has. It hides a table of this name in the file.
std::string CreateTagNames();

}  // namespace reader
