#pragma once

#include <string>

namespace reader {

// SQL that creates a temporary table tag_name with the format's tag names and texts. It hides the file's
// table of that name.
std::string CreateTagNames();

}  // namespace reader
