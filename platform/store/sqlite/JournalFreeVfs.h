#pragma once

#include <string>

namespace store {

// The name of a file system layer under which SQLite neither finds nor makes a rollback journal. One that was
// planted beside a database, and that names another file, would make SQLite delete that file. Everything else
// is what the default layer does.
const char* JournalFreeVfs();

// A URI's parameters with this layer among them.
inline std::string JournalFree(const char* parameters) {
  return parameters + std::string("&vfs=") + JournalFreeVfs();
}

}  // namespace store
