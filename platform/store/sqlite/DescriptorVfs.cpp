#include "DescriptorVfs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "FileLayer.h"

namespace store {
namespace {

FileLayer layer("descriptor");
int file = -1;

int Close(sqlite3_file* /*file*/) {
  return SQLITE_OK;
}

int Read(sqlite3_file* /*file*/, void* data, int size, sqlite3_int64 offset) {
  int done = 0;
  while (done < size) {
    const ssize_t got = pread(file, static_cast<char*>(data) + done, static_cast<std::size_t>(size - done),
                              static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return SQLITE_IOERR_READ;
    if (got == 0) break;
    done += static_cast<int>(got);
  }
  std::memset(static_cast<char*>(data) + done, 0, static_cast<std::size_t>(size - done));
  return done == size ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

int Write(sqlite3_file* /*file*/, const void* data, int size, sqlite3_int64 offset) {
  for (int done = 0; done < size;) {
    const ssize_t put = pwrite(file, static_cast<const char*>(data) + done,
                               static_cast<std::size_t>(size - done), static_cast<off_t>(offset + done));
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return put == 0 || errno == ENOSPC || errno == EFBIG ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    done += static_cast<int>(put);
  }
  return SQLITE_OK;
}

int Truncate(sqlite3_file* /*file*/, sqlite3_int64 size) {
  return ftruncate(file, static_cast<off_t>(size)) == 0 ? SQLITE_OK : SQLITE_IOERR_TRUNCATE;
}

int FileSize(sqlite3_file* /*file*/, sqlite3_int64* size) {
  struct stat status {};
  if (fstat(file, &status) != 0) return SQLITE_IOERR_FSTAT;
  *size = status.st_size;
  return SQLITE_OK;
}

// Lock, unlock and sync do nothing: the caller syncs.
int Nothing(sqlite3_file* /*file*/, int /*what*/) {
  return SQLITE_OK;
}
int CheckReservedLock(sqlite3_file* /*file*/, int* result) {
  *result = 0;
  return SQLITE_OK;
}
int Control(sqlite3_file* /*file*/, int /*what*/, void* /*argument*/) {
  return SQLITE_NOTFOUND;
}
int Default(sqlite3_file* /*file*/) {
  return 0;
}

constexpr sqlite3_io_methods kMethods = {
    1,       Close,   Read,    Write,   Truncate, Nothing, FileSize, Nothing, Nothing, CheckReservedLock,
    Control, Default, Default, nullptr, nullptr,  nullptr, nullptr,  nullptr, nullptr};

int Open(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* opened, int flags, int* outFlags) {
  if (name == nullptr || std::strcmp(name, kDescriptorName) != 0)
    return layer.Base()->xOpen(layer.Base(), name, opened, flags, outFlags);
  opened->pMethods = &kMethods;
  if (outFlags != nullptr) *outFlags = flags;
  return SQLITE_OK;
}

int FullName(sqlite3_vfs* /*vfs*/, const char* name, int size, char* full) {
  (void)sqlite3_snprintf(size, full, "%s", name);
  return SQLITE_OK;
}

int NoAccess(sqlite3_vfs* /*vfs*/, const char* /*name*/, int /*flags*/, int* result) {
  *result = 0;
  return SQLITE_OK;
}

}  // namespace

const char* DescriptorVfs(int descriptor) {
  file = descriptor;
  return layer.Register([](sqlite3_vfs& vfs) {
    vfs.xOpen = Open;
    vfs.xFullPathname = FullName;
    vfs.xAccess = NoAccess;
  });
}

}  // namespace store
