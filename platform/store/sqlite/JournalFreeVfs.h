#pragma once

#include <string>

namespace store {

// The name of an SQLite file system layer that neither finds nor creates rollback journals. A planted journal
// that names another file would make SQLite delete that file. In all else it is the default layer.
const char* JournalFreeVfs();

// Adds this layer to the parameters of a URI.
inline std::string JournalFree(const char* parameters) {
  return parameters + std::string("&vfs=") + JournalFreeVfs();
}

}  // namespace store
