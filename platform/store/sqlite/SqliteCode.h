#pragma once

#include <sqlite3.h>

namespace store {

// The result of an SQLite call. The code asks for the named values; every other value is an error.
enum class [[nodiscard]] SqliteCode : int{
    kOk = SQLITE_OK,
    kRow = SQLITE_ROW,              // Step returned a row
    kDone = SQLITE_DONE,            // there are no more rows
    kBusy = SQLITE_BUSY,            // another connection holds a lock
    kNoMemory = SQLITE_NOMEM,       // or past the limit of memory
    kInterrupt = SQLITE_INTERRUPT,  // past the limit of work or time
    kCorrupt = SQLITE_CORRUPT,
    kTooBig = SQLITE_TOOBIG,  // a value past its limit
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
