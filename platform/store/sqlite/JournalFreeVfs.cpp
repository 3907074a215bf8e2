#include "JournalFreeVfs.h"

#include <string_view>

#include "FileLayer.h"

namespace store {
namespace {

constexpr int kJournals = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL;

FileLayer journalLayer("journal-free");

bool IsJournal(const char* name) {
  return name != nullptr && std::string_view(name).ends_with("-journal");
}

int OpenNoJournal(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* opened, int flags, int* outFlags) {
  opened->pMethods = nullptr;
  if ((flags & kJournals) != 0 || IsJournal(name)) return SQLITE_CANTOPEN;
  return journalLayer.Base()->xOpen(journalLayer.Base(), name, opened, flags, outFlags);
}

int Delete(sqlite3_vfs* /*vfs*/, const char* name, int syncDirectory) {
  return IsJournal(name) ? SQLITE_OK : journalLayer.Base()->xDelete(journalLayer.Base(), name, syncDirectory);
}

int Access(sqlite3_vfs* /*vfs*/, const char* name, int flags, int* result) {
  *result = 0;
  return IsJournal(name) ? SQLITE_OK : journalLayer.Base()->xAccess(journalLayer.Base(), name, flags, result);
}

}  // namespace

const char* JournalFreeVfs() {
  return journalLayer.Register([](sqlite3_vfs& vfs) {
    vfs.xOpen = OpenNoJournal;
    vfs.xDelete = Delete;
    vfs.xAccess = Access;
  });
}

}  // namespace store
