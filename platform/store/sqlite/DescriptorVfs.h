#pragma once

namespace store {

// A file system layer of one file, which is open already: SQLite writes a database through the descriptor and
// never opens anything by name for it. Other files, temporary ones say, are the default layer's. Nothing is
// locked; the descriptor stays the caller's, and must be open as long as the connection is. One at a time.
const char* DescriptorVfs(int descriptor);

// The name to open it by.
inline constexpr const char* kDescriptorName = "/descriptor";

}  // namespace store
