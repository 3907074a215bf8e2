#include "JournalFreeVfs.h"

#include <string_view>

#include "FileLayer.h"

namespace store {
namespace {

constexpr int kJournals = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL;

FileLayer layer("journal-free");

bool IsJournal(const char* name) {
  return name != nullptr && std::string_view(name).ends_with("-journal");
}

int Open(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  if ((flags & kJournals) != 0 || IsJournal(name)) return SQLITE_CANTOPEN;
  return layer.Base()->xOpen(layer.Base(), name, file, flags, outFlags);
}

int Delete(sqlite3_vfs* /*vfs*/, const char* name, int syncDirectory) {
  return IsJournal(name) ? SQLITE_OK : layer.Base()->xDelete(layer.Base(), name, syncDirectory);
}

int Access(sqlite3_vfs* /*vfs*/, const char* name, int flags, int* result) {
  *result = 0;
  return IsJournal(name) ? SQLITE_OK : layer.Base()->xAccess(layer.Base(), name, flags, result);
}

}  // namespace

const char* JournalFreeVfs() {
  return layer.Register([](sqlite3_vfs& vfs) {
    vfs.xOpen = Open;
    vfs.xDelete = Delete;
    vfs.xAccess = Access;
  });
}

}  // namespace store
