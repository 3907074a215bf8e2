#pragma once

namespace store {

// An SQLite file system layer for one file that is already open. SQLite reads and writes the database through
// the descriptor and never opens it by name. The default layer handles other files, such as temporary ones.
// Locks nothing. The caller owns the descriptor and keeps it open while the connection is. One at a time.
const char* DescriptorVfs(int descriptor);

// The name under which SQLite opens the descriptor.
inline constexpr const char* kDescriptorName = "/descriptor";

}  // namespace store
