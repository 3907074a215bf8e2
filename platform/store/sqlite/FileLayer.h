#pragma once

#include <sqlite3.h>

namespace store {

// An SQLite file system layer above the default one. Lives as long as the program, because SQLite refers to
// it.
class FileLayer {
 public:
  constexpr explicit FileLayer(const char* name) : name_(name) {}
  FileLayer(const FileLayer&) = delete;
  FileLayer& operator=(const FileLayer&) = delete;

  // Registers the layer, unless it is registered above the layer that is the default one now. `replace` sets
  // the functions that differ from the default layer's. Returns the layer's name.
  const char* Register(void (*replace)(sqlite3_vfs& layer));

  // The default layer. Valid after Register.
  sqlite3_vfs* Base() const { return base_; }

 private:
  const char* const name_;
  sqlite3_vfs* base_ = nullptr;
  sqlite3_vfs layer_{};
};

}  // namespace store
