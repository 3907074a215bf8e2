#pragma once

#include <sqlite3.h>

namespace store {

// The result of an SQLite call. The code asks for the named values; every other value is an error.
enum class [[nodiscard]] SqliteCode : int{
    kOk = SQLITE_OK,
    kRow = SQLITE_ROW,
    kDone = SQLITE_DONE,
    kBusy = SQLITE_BUSY,
    kInterrupt = SQLITE_INTERRUPT,
    kCorrupt = SQLITE_CORRUPT,
    kNotDatabase = SQLITE_NOTADB,
};

constexpr bool Ok(SqliteCode code) {
  return code == SqliteCode::kOk;
}

// The result as English text.
inline const char* TextOf(SqliteCode code) {
  return sqlite3_errstr(static_cast<int>(code));
}

}  // namespace store
