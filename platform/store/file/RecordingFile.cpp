#include "RecordingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "NewFile.h"
#include "Schema.h"
#include "Tables.h"

namespace store {
namespace {

constexpr const char* kWalMode = "PRAGMA journal_mode=WAL";
constexpr const char* kSettings[] = {
    "PRAGMA synchronous=FULL",         // a commit is on the medium when it returns
    "PRAGMA cache_size=-512",          // KiB
    "PRAGMA mmap_size=0",              // a failing medium gives an error code, not a signal
    "PRAGMA wal_autocheckpoint=1000",  // pages
    "PRAGMA journal_size_limit=1048576",
};

std::string WalOf(const std::string& path) {
  return path + "-wal";
}

bool Configure(Database& database, const RunId& id) {
  const auto run = [&database](const std::string& sql) { return Ok(database.Execute(sql)); };
  std::string mode;
  if (!Ok(database.Query(kWalMode, mode)) || mode != "wal") return false;
  return std::all_of(std::begin(kSettings), std::end(kSettings), run) && run(CreateRecording(id));
}

// An empty database in WAL mode. It is complete before it gets its name, so neither a power cut nor a planted
// journal can alter it, as they could if SQLite created it under its name.
std::string EmptyDatabase() {
  constexpr std::size_t kVersionsAt = 18;  // write version, read version: 2 for WAL mode
  Database memory;
  // Small pages: a commit writes whole pages but few records.
  const std::string sql =
      "PRAGMA page_size=1024; BEGIN; PRAGMA application_id=" + std::to_string(kApplicationId) +
      "; PRAGMA user_version=" + std::to_string(kSchemaVersion) + "; COMMIT";
  if (!Ok(memory.Open(":memory:")) || !Ok(memory.Execute(sql))) return {};
  std::string bytes = memory.Bytes();
  if (bytes.size() > kVersionsAt + 1) bytes[kVersionsAt] = bytes[kVersionsAt + 1] = 2;
  return bytes;
}

// 0 or an errno value.
int CreateFile(const std::string& path) {
  constexpr mode_t kMode = 0640;
  const std::string bytes = EmptyDatabase();
  const std::string name = NameOf(path);
  const std::string directory = path.substr(0, path.size() - name.size());
  const Descriptor opened(
      open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen() || bytes.empty()) return EIO;
  NewFile file;
  if (const int error = file.Create(opened.Get(), name, name + "-new"); error != 0) return error;
  const ssize_t put = pwrite(file.Get(), bytes.data(), bytes.size(), 0);
  if (put != static_cast<ssize_t>(bytes.size())) return ENOSPC;
  (void)fchmod(file.Get(), kMode);  // not every file system has modes
  return file.Publish();
}

}  // namespace

int RecordingFile::Create(const std::string& path, const RunId& run) {
  if (const int error = CreateFile(path); error != 0) return error == EEXIST ? EEXIST : EIO;
  path_ = path;
  const bool made = Ok(database_.Open(path)) && Configure(database_, run) && Prepare();
  const bool alone = IsOwn("-wal") && IsOwn("-shm");
  if (made && alone && Identify(path_, identity_) == 0 && OpenWal()) return 0;
  Finalize();
  (void)database_.KeepWals();
  database_.Close();
  for (const char* suffix : {"-wal", "-shm", ""}) {
    if (IsOwn(suffix)) (void)unlink((path + suffix).c_str());
  }
  return made && !alone ? EEXIST : EIO;
}

// Whether the file beside the recording has its owner. A WAL or index that others planted is not used.
bool RecordingFile::IsOwn(const char* suffix) const {
  struct stat file {};
  struct stat beside {};
  return stat(path_.c_str(), &file) == 0 && lstat((path_ + suffix).c_str(), &beside) == 0 &&
         S_ISREG(beside.st_mode) && beside.st_uid == file.st_uid;
}

bool RecordingFile::OpenWal() {
  struct stat status {};
  walHead_ = OpenPlainFile(WalOf(path_), status);
  if (!walHead_.IsOpen()) return false;
  wal_.device = status.st_dev;
  wal_.inode = status.st_ino;
  RememberWal();
  return true;
}

void RecordingFile::RememberWal() {
  struct stat status {};
  if (fstat(walHead_.Get(), &status) == 0) wal_.bytes = static_cast<std::uint64_t>(status.st_size);
  (void)ReadFully(walHead_, 0, head_.data(), head_.size());
}

bool RecordingFile::Prepare() {
  sqlite3* const handle = database_.Handle();
  SqliteCode code = rows_.Register(handle);
  if (Ok(code)) code = begin_.Prepare(handle, "BEGIN IMMEDIATE");
  if (Ok(code)) code = commit_.Prepare(handle, "COMMIT");
  if (Ok(code)) code = seals_.Prepare(handle);
  for (const Table& table : kTables) {
    if (Ok(code)) code = inserts_[table.id].Prepare(handle, InsertFromBatch(table.id));
  }
  return Ok(code);
}

SqliteCode RecordingFile::Write(const Batch& batch, std::size_t maxBytes, seal::Sealer& sealer,
                                std::int64_t& lastSeq) {
  const RecordHeader last = rows_.Take(batch, maxBytes);
  inDoubt_ = false;
  SqliteCode code = begin_.Run();
  if (Ok(code)) code = InsertAll();
  if (Ok(code)) code = seals_.Insert(SealRows(batch, last, sealer));
  if (Ok(code)) {
    inDoubt_ = true;
    code = commit_.Run();
  }
  if (Ok(code)) {
    inDoubt_ = false;
    lastSeq = last.seq;
  } else if (sqlite3_get_autocommit(database_.Handle()) == 0) {
    (void)database_.Execute("ROLLBACK");
  }
  RememberWal();
  return code;
}

SqliteCode RecordingFile::InsertAll() {
  for (const Table& table : kTables) {
    if (!rows_.Select(table.id)) continue;
    if (const SqliteCode code = inserts_[table.id].Run(); !Ok(code)) return code;
  }
  return SqliteCode::kOk;
}

const char* RecordingFile::Harm() {
  FileIdentity now;
  // Other errors prove no harm.
  const auto gone = [&now](const std::string& path, const FileIdentity& known) {
    const int error = Identify(path, now);
    if (error != 0) now = known;
    return error == ENOENT || error == ENOTDIR || !now.SameFile(known);
  };
  if (gone(path_, identity_)) return "removed or replaced";
  if (now.bytes < identity_.bytes) return "truncated";
  identity_ = now;
  if (gone(WalOf(path_), wal_)) return "left without its WAL, which was removed or replaced";
  if (now.bytes < wal_.bytes) return "damaged: its WAL was truncated";
  std::array<unsigned char, 32> head{};
  if (ReadFully(walHead_, 0, head.data(), head.size()) != 0 && head != head_)
    return "damaged: its WAL was overwritten";
  return nullptr;
}

void RecordingFile::Finalize() {
  for (Statement* statement : {&begin_, &commit_}) *statement = Statement();
  seals_ = SealTable();
  inserts_ = {};
}

void RecordingFile::Close() {
  if (!IsOpen()) return;
  Finalize();
  // Leaving WAL mode folds the WAL in and makes the file readable on a read-only medium. If the file or its
  // WAL was harmed, nothing is folded in.
  if (Harm() == nullptr) {
    (void)database_.Execute("PRAGMA synchronous=EXTRA; PRAGMA journal_mode=MEMORY");
  } else {
    (void)database_.KeepWals();
  }
  database_.Close();
  walHead_.Reset();
}

}  // namespace store
