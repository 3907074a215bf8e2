#include "FileLayer.h"

namespace store {

const char* FileLayer::Register(void (*replace)(sqlite3_vfs& layer)) {
  sqlite3_vfs* const current = sqlite3_vfs_find(nullptr);
  if (current == base_) return name_;
  if (base_ != nullptr) (void)sqlite3_vfs_unregister(&layer_);
  base_ = current;
  layer_ = *base_;
  layer_.zName = name_;
  layer_.pNext = nullptr;
  replace(layer_);
  (void)sqlite3_vfs_register(&layer_, 0);
  return name_;
}

}  // namespace store
