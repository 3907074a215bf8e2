#include "WatchedVfs.h"

#include <cstdlib>

namespace {

FileWatch* watcher = nullptr;

// Without threads and statistics SQLite saves a fifth of the time.
[[maybe_unused]] const int kQuick =
    sqlite3_config(SQLITE_CONFIG_SINGLETHREAD) + sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);

// SQLite allocates this; the real file follows in the same memory.
struct File {
  sqlite3_file base;
  const char* path;    // SQLite keeps the text while the file is open
  bool syncDirectory;  // at the first sync, as the system layer does for a new journal
  std::int64_t padding;
};

File& Of(sqlite3_file* file) {
  return *reinterpret_cast<File*>(file);
}
sqlite3_file* Real(sqlite3_file* file) {
  return reinterpret_cast<sqlite3_file*>(&Of(file) + 1);
}
sqlite3_vfs* RealVfs() {
  return sqlite3_vfs_find(kPlainVfs);
}

// Shows the operation to the watcher, and performs `act` unless the watcher fails it.
template <typename Act>
int Watched(const FileEvent& event, Act act) {
  if (const Verdict verdict = watcher->Before(event); verdict.code != SQLITE_OK) return verdict.code;
  const int rc = act();
  if (rc == SQLITE_OK) watcher->After(event);
  return rc;
}

// Passes an unwatched operation to the real file.
template <auto kOperation, typename... Arguments>
auto Pass(sqlite3_file* file, Arguments... arguments) {
  return (Real(file)->pMethods->*kOperation)(Real(file), arguments...);
}

int Read(sqlite3_file* file, void* data, int size, sqlite3_int64 offset) {
  const Verdict verdict = watcher->Before({FileOp::kRead, Of(file).path, offset});
  return verdict.code != SQLITE_OK ? verdict.code
                                   : Real(file)->pMethods->xRead(Real(file), data, size, offset);
}
int Write(sqlite3_file* file, const void* data, int size, sqlite3_int64 offset) {
  FileEvent event{FileOp::kWrite, Of(file).path, offset};
  event.data = {static_cast<const char*>(data), static_cast<std::size_t>(size)};
  const Verdict verdict = watcher->Before(event);
  if (verdict.code == SQLITE_OK || verdict.written > 0) {
    if (verdict.code != SQLITE_OK) event.data = event.data.substr(0, verdict.written);
    const int rc =
        Real(file)->pMethods->xWrite(Real(file), data, static_cast<int>(event.data.size()), offset);
    if (rc != SQLITE_OK) return rc;
    watcher->After(event);
  }
  return verdict.code;
}
int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  return Watched({FileOp::kTruncate, Of(file).path, size},
                 [&] { return Real(file)->pMethods->xTruncate(Real(file), size); });
}
int Sync(sqlite3_file* file, int flags) {
  FileEvent event{FileOp::kSync, Of(file).path};
  event.directory = Of(file).syncDirectory;
  const int rc = Watched(event, [&] { return Real(file)->pMethods->xSync(Real(file), flags); });
  if (rc == SQLITE_OK) Of(file).syncDirectory = false;
  return rc;
}

using Methods = sqlite3_io_methods;
constexpr int kMethodsVersion = 2;  // version 2: shared memory, no memory-mapped reads
constexpr Methods kMethods = {kMethodsVersion,
                              Pass<&Methods::xClose>,
                              Read,
                              Write,
                              Truncate,
                              Sync,
                              Pass<&Methods::xFileSize>,
                              Pass<&Methods::xLock>,
                              Pass<&Methods::xUnlock>,
                              Pass<&Methods::xCheckReservedLock>,
                              Pass<&Methods::xFileControl>,
                              Pass<&Methods::xSectorSize>,
                              Pass<&Methods::xDeviceCharacteristics>,
                              Pass<&Methods::xShmMap>,
                              Pass<&Methods::xShmLock>,
                              Pass<&Methods::xShmBarrier>,
                              Pass<&Methods::xShmUnmap>,
                              nullptr,
                              nullptr};

int Open(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  if (name == nullptr) std::abort();  // a temporary file, which the store never uses
  constexpr int kJournals = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL | SQLITE_OPEN_WAL;
  Of(file) = {};
  Of(file).path = name;
  Of(file).syncDirectory = (flags & SQLITE_OPEN_CREATE) != 0 && (flags & kJournals) != 0;
  return Watched({FileOp::kOpen, name}, [&] {
    const int rc = RealVfs()->xOpen(RealVfs(), name, Real(file), flags, outFlags);
    if (Real(file)->pMethods != nullptr) file->pMethods = &kMethods;
    return rc;
  });
}

int Delete(sqlite3_vfs* /*vfs*/, const char* name, int syncDirectory) {
  FileEvent event{FileOp::kDelete, name};
  event.directory = syncDirectory != 0;
  return Watched(event, [&] { return RealVfs()->xDelete(RealVfs(), name, syncDirectory); });
}

sqlite3_vfs layer;

}  // namespace

WatchedVfs::WatchedVfs(FileWatch& watch) {
  watcher = &watch;
  layer = *RealVfs();  // operations that do not touch file contents stay
  layer.szOsFile += static_cast<int>(sizeof(File));
  layer.zName = "watched";
  layer.pNext = nullptr;
  layer.xOpen = Open;
  layer.xDelete = Delete;
  if (sqlite3_vfs_register(&layer, 1) != SQLITE_OK) std::abort();
}

WatchedVfs::~WatchedVfs() {
  sqlite3_vfs_unregister(&layer);
  sqlite3_vfs_register(RealVfs(), 1);
  watcher = nullptr;
}
