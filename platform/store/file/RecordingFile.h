#pragma once

#include <array>
#include <string>

#include "BatchTable.h"
#include "Database.h"
#include "FileNames.h"
#include "PlainFile.h"
#include "RunId.h"

namespace store {

// One recording file while it is written.
class RecordingFile {
 public:
  RecordingFile() = default;
  ~RecordingFile() { Close(); }
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;

  // Creates the file with its schema, as one of this run: 0; EEXIST when something of others stands in its
  // way; EIO when it cannot be. Nothing is left behind then.
  int Create(const std::string& path, const RunId& run);

  // Writes records from the front of the batch, at most about `maxBytes` of them, in one
  // transaction, and tells the sequence number of the last one. kOk or an error: the records
  // may have been written nevertheless, CommittedSeq tells.
  SqliteCode Write(const Batch& batch, std::size_t maxBytes, std::int64_t& lastSeq);
  SqliteCode CommittedSeq(std::int64_t& seq);

  // Looks at the file and at its log: what was done to them that we did not do, null for nothing. Of the log
  // only size and head are looked at.
  const char* Harm();
  std::uint64_t Bytes() const { return identity_.bytes + log_.bytes; }  // when last looked at
  std::uint64_t LogBytes() const { return log_.bytes; }

  // A file that is still there is left as one single file; one that is not is let go of.
  void Close();

  bool IsOpen() const { return database_.Handle() != nullptr; }
  const std::string& Path() const { return path_; }
  Database& Connection() { return database_; }

 private:
  bool Prepare();
  bool OpenLog();
  bool IsOwn(const char* suffix) const;
  void RememberLog();
  void Finalize();  // the statements: SQLite closes no connection that has any
  SqliteCode InsertAll();

  std::string path_;
  FileIdentity identity_;
  FileIdentity log_;
  Descriptor logHead_;  // closing it gives up no lock: SQLite locks nothing of a log
  std::array<unsigned char, 32> head_{};
  BatchTable rows_;
  Database database_;
  Statement begin_;
  Statement commit_;
  Statement progress_;
  Statement readProgress_;
  std::array<Statement, kTableCount> inserts_;
};

}  // namespace store
