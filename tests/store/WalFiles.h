#pragma once

#include <string>

#include "WalScan.h"
#include "support/Connection.h"
#include "support/TempDir.h"

inline constexpr std::size_t kWalPage = 512;
inline constexpr std::size_t kWalHeader = 32;
inline constexpr std::size_t kWalFrame = 24 + kWalPage;

// A database and its WAL, as a power cut leaves them.
struct WalFiles {
  std::string database;
  std::string wal;
};

// Makes a WAL of `commits` commits; each after the first writes two pages. Commits up to `restartAfter` are
// checkpointed first, so their frames in the WAL are stale until overwritten.
inline WalFiles MakeWal(int commits, int restartAfter = 0) {
  const TempDir dir;
  Connection writer(dir.Write("made.db", ""));
  (void)writer.Rows("PRAGMA page_size=512; PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0");
  for (int i = 1; i <= commits; ++i) {
    (void)writer.Rows(i == 1 ? "CREATE TABLE t(a); CREATE TABLE u(a)"
                             : "BEGIN; INSERT INTO t VALUES(1); INSERT INTO u VALUES(1); COMMIT");
    if (i == restartAfter) (void)writer.Rows("PRAGMA wal_checkpoint(RESTART)");
  }
  return {dir.Read("made.db"), dir.Read("made.db-wal")};
}

inline store::ReadAt ReaderOf(const std::string& bytes) {
  return [&bytes](std::uint64_t offset, unsigned char* data, std::size_t size) {
    if (offset >= bytes.size()) return std::size_t{0};
    return bytes.copy(reinterpret_cast<char*>(data), size, static_cast<std::size_t>(offset));
  };
}

// The number of WAL bytes that SQLite recovers. Checkpoints the WAL.
inline std::uint64_t RecoveredBySqlite(const WalFiles& files, const TempDir& dir) {
  const std::string path = dir.Write("recovered.db", files.database);
  dir.Write("recovered.db-wal", files.wal);
  const std::string told = Connection(path).Rows("PRAGMA wal_checkpoint");  // busy|frames|checkpointed frames
  const unsigned long frames = told.starts_with("0|") ? std::strtoul(told.c_str() + 2, nullptr, 10) : 0;
  return kWalHeader + frames * kWalFrame;
}
