#include "JournalFreeVfs.h"

#include <sqlite3.h>

#include <string_view>

namespace store {
namespace {

constexpr const char* kName = "journal-free";
constexpr int kJournals = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL;

sqlite3_vfs* base = nullptr;  // the default layer
sqlite3_vfs layer;

bool IsJournal(const char* name) {
  return name != nullptr && std::string_view(name).ends_with("-journal");
}

int Open(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  if ((flags & kJournals) != 0 || IsJournal(name)) return SQLITE_CANTOPEN;
  return base->xOpen(base, name, file, flags, outFlags);
}

int Delete(sqlite3_vfs* /*vfs*/, const char* name, int syncDirectory) {
  return IsJournal(name) ? SQLITE_OK : base->xDelete(base, name, syncDirectory);
}

int Access(sqlite3_vfs* /*vfs*/, const char* name, int flags, int* result) {
  *result = 0;
  return IsJournal(name) ? SQLITE_OK : base->xAccess(base, name, flags, result);
}

}  // namespace

const char* JournalFreeVfs() {
  sqlite3_vfs* const current = sqlite3_vfs_find(nullptr);
  if (current == base) return kName;
  if (base != nullptr) (void)sqlite3_vfs_unregister(&layer);
  base = current;
  layer = *base;
  layer.zName = kName;
  layer.pNext = nullptr;
  layer.xOpen = Open;
  layer.xDelete = Delete;
  layer.xAccess = Access;
  (void)sqlite3_vfs_register(&layer, 0);
  return kName;
}

}  // namespace store
