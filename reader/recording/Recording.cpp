#include "Recording.h"

#include "FileUri.h"
#include "FilesBeside.h"
#include "Schema.h"
#include "TagNames.h"

namespace reader {
namespace {

constexpr int kBusyTimeoutMs = 2000;

}  // namespace

bool Recording::Open(const std::string& path, std::string& error) {
  path_ = path;
  FilesBeside files;
  if (!LookBeside(path, files, error)) return false;
  missesWal_ = files.isInWalMode && !files.wal;
  if (!files.wal) {
    kind_ = Kind::kClosed;
    return Connect(store::FileUri(path, "?mode=ro&immutable=1"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI,
                   error);
  }
  // The store never leaves a rollback journal. SQLite could apply a planted one, so a copy without it is
  // read.
  if (files.hasWriter && !files.journal) {
    kind_ = Kind::kLive;
    EndInOrderWhereAMappedFileIsCutShort();
    if (Connect(store::FileUri(path, "?mode=ro"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, error)) return true;
  }
  kind_ = Kind::kLeftOver;
  return ConnectToCopy(error);
}

bool Recording::ConnectToCopy(std::string& error) {
  PrivateCopy copy;
  return copy.Make(path_, error) && Connect(copy.Path(), SQLITE_OPEN_READWRITE, error);
}

bool Recording::Connect(const std::string& name, int flags, std::string& error) {
  catalogue_ = {};
  cutShort_ = false;
  SqliteCode code = connection_.Open(name, flags);
  if (Ok(code)) {
    (void)sqlite3_busy_timeout(connection_.Handle(), kBusyTimeoutMs);
    // Exclusive mode keeps the WAL index in memory: the copy's files are deleted while it is read.
    if (kind_ == Kind::kLeftOver) (void)connection_.Execute("PRAGMA locking_mode=EXCLUSIVE");
    code = Look();
  }
  if (code == SqliteCode::kCorrupt) {
    // With writable_schema, SQLite also opens a file that is shorter than its header says.
    (void)sqlite3_db_config(connection_.Handle(), SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    (void)connection_.Execute("PRAGMA writable_schema=ON");
    code = Look();
    cutShort_ = Ok(code);
  }
  if (!Ok(code)) {
    error = connection_.IsOpen() ? connection_.Error() : ErrorText(code);
  } else if (connection_.Integer("PRAGMA application_id", 0) != store::kApplicationId) {
    error = "not a recording";
  } else if (!ReadCatalogue(connection_, catalogue_)) {
    error = "its tables cannot be read: " + connection_.Error();
  } else {
    Prepare();
    return true;
  }
  connection_.Close();
  return false;
}

// The format's text expressions read tag names from a table; this program's temporary table hides the file's.
void Recording::Prepare() {
  (void)connection_.Execute("PRAGMA temp_store=MEMORY");
  (void)connection_.Execute(CreateTagNames());
  (void)connection_.Execute("PRAGMA query_only=ON");
}

std::int64_t Recording::Committed(const std::string& column, std::int64_t otherwise) {
  otherwise = connection_.Integer("SELECT " + column + " FROM main.progress", otherwise);
  return connection_.Integer("SELECT " + column + " FROM main.seal ORDER BY number DESC LIMIT 1", otherwise);
}

SqliteCode Recording::Look() {
  Statement look;
  SqliteCode code = look.Prepare(connection_.Handle(), "SELECT EXISTS(SELECT 1 FROM sqlite_master)");
  if (Ok(code)) code = look.Step();
  return code == SqliteCode::kRow ? SqliteCode::kOk : code;
}

}  // namespace reader
