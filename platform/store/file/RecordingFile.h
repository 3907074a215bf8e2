#pragma once

#include <array>
#include <string>

#include "BatchTable.h"
#include "Database.h"
#include "FileNames.h"
#include "PlainFile.h"
#include "RunId.h"
#include "SealTable.h"

namespace store {

// The recording that is being written.
class RecordingFile {
 public:
  RecordingFile() = default;
  ~RecordingFile() { Close(); }
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;

  // Creates the file and its schema for this run. Returns 0, EEXIST if another file is in the way, or EIO. On
  // failure no file is left behind.
  int Create(const std::string& path, const RunId& run);

  // Writes about `maxBytes` of records from the front of the batch, and their seal, in one transaction. Sets
  // `lastSeq` to the last sequence number. After an error the commit may still have taken effect: ask
  // LastCommit. InDoubt tells that only the file knows: the error came from the commit itself.
  SqliteCode Write(const Batch& batch, std::size_t maxBytes, seal::Sealer& sealer, std::int64_t& lastSeq);
  bool InDoubt() const { return inDoubt_; }
  SqliteCode LastCommit(seal::Place& place, std::int64_t& seq) { return seals_.ReadLast(place, seq); }

  // How others harmed the file or its WAL; null if they did not. Of the WAL it checks only identity, size and
  // head.
  const char* Harm();
  std::uint64_t Bytes() const { return identity_.bytes + wal_.bytes; }  // as last seen
  std::uint64_t WalBytes() const { return wal_.bytes; }

  // Leaves one single file. If the file or its WAL was harmed, leaves both as they are.
  void Close();

  bool IsOpen() const { return database_.Handle() != nullptr; }
  const std::string& Path() const { return path_; }
  Database& Connection() { return database_; }

 private:
  bool Prepare();
  bool OpenWal();
  bool IsOwn(const char* suffix) const;
  void RememberWal();
  void Finalize();  // ends all statements: SQLite closes no connection that has any
  SqliteCode InsertAll();

  std::string path_;
  FileIdentity identity_;
  FileIdentity wal_;
  Descriptor walHead_;  // closing it releases no lock: SQLite holds none on a WAL
  std::array<unsigned char, 32> head_{};
  BatchTable rows_;
  Database database_;
  Statement begin_;
  Statement commit_;
  SealTable seals_;
  std::array<Statement, kTableCount> inserts_;
  bool inDoubt_ = false;
};

}  // namespace store
