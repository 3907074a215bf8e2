#include "PreviousRun.h"

#include <utility>

#include "Database.h"
#include "EarlierFile.h"
#include "EarlierWal.h"
#include "Patience.h"
#include "Schema.h"
#include "SealTable.h"
#include "StoreLog.h"

namespace store {
namespace {

constexpr std::chrono::milliseconds kMostLooking{100};

constexpr const char* kCountTables =
    "SELECT count(*) FROM sqlite_schema WHERE type='table' AND rootpage>0 AND name IN "
    "('progress','run_end','clock')";
constexpr const char* kHasSeals =
    "SELECT count(*) FROM sqlite_schema WHERE type='table' AND rootpage>0 AND name='seal'";
constexpr const char* kReadProgress = "SELECT last_seq, last_tick FROM progress";

SqliteCode ReadLast(Database& database, const char* sql, PreviousRun& run) {
  Statement last;
  SqliteCode code = last.Prepare(database.Handle(), sql);
  if (Ok(code)) code = last.Step();
  if (code != SqliteCode::kRow) return code;
  run.lastSeq = last.Integer(0);
  run.lastTick = last.Integer(1);
  return SqliteCode::kOk;
}

// Leaves `lastSeq` at 0 if the file has no schema or no commit: power was lost while it was begun.
SqliteCode ReadLastRecord(Database& database, PreviousRun& run) {
  std::int64_t tables = 0;
  SqliteCode code = database.Query("SELECT count(*) FROM sqlite_schema", tables);
  if (!Ok(code) || tables == 0) return code;
  code = database.Query(kCountTables, tables);
  if (Ok(code) && tables != 3) code = SqliteCode::kNotDatabase;
  if (Ok(code)) code = database.Query(kHasSeals, tables);
  if (!Ok(code)) return code;
  if (tables != 0) {
    code = ReadLast(database, kReadLastSealed, run);
    if (Ok(code)) code = ReadLastSeal(database, run.seal);
    if (code != SqliteCode::kDone) return code;
  }
  return ReadLast(database, kReadProgress, run);
}

SqliteCode ReadEnd(Database& database, PreviousRun& run) {
  std::int64_t clean = 0;
  SqliteCode code = ReadLastRecord(database, run);
  if (!Ok(code) || run.lastSeq == 0) return code;
  code = database.Query("SELECT EXISTS(SELECT 1 FROM run_end)", clean);
  if (!Ok(code)) return code;
  (void)database.Query("SELECT utc_ms - tick + " + std::to_string(run.lastTick) +
                           " FROM clock WHERE seq <= " + std::to_string(run.lastSeq) +
                           " ORDER BY seq DESC LIMIT 1",
                       run.lastUtcMs);
  run.ended = clean != 0 ? "clean" : "cut off";
  return code;
}

class Look {
 public:
  explicit Look(const FileNames& names) : names_(names) {}

  PreviousRun Run() {
    FileNames::Numbers numbers;
    (void)names_.List(numbers);
    for (const std::uint32_t number : numbers.recordings) {
      path_ = names_.PathOf(number);
      run_ = PreviousRun();
      run_.file = NameOf(path_);
      if (over_()) {
        LeaveAlone("looking at earlier files has taken too long");
        return run_;
      }
      if (Tells()) return run_;
    }
    return {};
  }

 private:
  void LeaveAlone(const char* why, const char* ended = "unreadable") {
    kStoreLog(kLogError, "Left alone: ", path_, ": ", why);
    run_.ended = ended;
  }

  // False: skip this file.
  bool Tells() {
    const EarlierFile file = LookAtEarlierFile(path_, owner_);
    if (file == EarlierFile::kForeign) return false;
    const auto begun = Patience::Clock::now();
    const EarlierWal wal = EarlierWal::Look(path_, owner_);
    if (wal.finding.frameBytes != 0 && !std::exchange(scanned_, true))
      patience_.Excuse(Patience::Clock::now() - begun);
    const bool hasWal = wal.state != EarlierWal::State::kNone && wal.state != EarlierWal::State::kForeign;
    if (file == EarlierFile::kEmpty && !hasWal) return false;
    if (file != EarlierFile::kRecording) {
      LeaveAlone("it is no recording");
      return true;
    }
    switch (wal.state) {
      case EarlierWal::State::kDamaged:
        LeaveAlone(("its WAL is damaged at offset " + std::to_string(wal.finding.brokenAt)).c_str(),
                   "damaged");
        return true;
      case EarlierWal::State::kTooLong:
        LeaveAlone("its WAL is too long");
        return true;
      case EarlierWal::State::kFolds:
        return ReadWith(wal);
      default:
        return ReadAlone();
    }
  }

  bool ReadAlone() {
    Database database;
    SqliteCode code = database.OpenHostileAlone(path_);
    if (Ok(code)) database.EndWhen(over_);
    if (Ok(code)) code = ReadEnd(database, run_);
    return TellsAfter(code);
  }

  // With an exclusive lock SQLite makes no -shm file. If another program still has the file open, this reads
  // through the existing -shm and does not fold the WAL in.
  bool ReadWith(const EarlierWal& wal) {
    SqliteCode code = ReadWith(wal, "PRAGMA locking_mode=EXCLUSIVE");
    std::uint32_t owner = 0;
    if (code == SqliteCode::kBusy && LookAtEarlierFile(path_ + "-shm", owner) != EarlierFile::kForeign &&
        owner == owner_) {
      code = ReadWith(wal, "");
    }
    return TellsAfter(code);
  }

  SqliteCode ReadWith(const EarlierWal& wal, const char* setting) {
    Database database;
    SqliteCode code = database.OpenHostile(path_);
    if (Ok(code)) code = database.Execute(setting);
    if (Ok(code)) database.EndWhen(over_);
    if (Ok(code)) code = ReadEnd(database, run_);
    if (Ok(code) && run_.lastSeq != 0 && *setting != '\0') Fold(database, wal);
    return code;
  }

  void Fold(Database& database, const EarlierWal& wal) {
    if (!wal.KeepTail(path_)) {
      kStoreLog(kLogError, "Left alone: ", path_, ": the torn end of its WAL cannot be kept");
      return;
    }
    if (wal.finding.state == WalState::kTorn)
      kStoreLog(kLogError, "Kept the torn end of the WAL of ", path_, " from offset ",
                static_cast<long long>(wal.finding.brokenAt));
    database.EndWhen(never_);
    (void)database.Execute("PRAGMA synchronous=EXTRA; PRAGMA journal_mode=MEMORY");
  }

  bool TellsAfter(SqliteCode code) {
    if (Ok(code)) return run_.lastSeq != 0;
    LeaveAlone(code == SqliteCode::kInterrupt ? "reading it takes too long" : TextOf(code));
    return true;
  }

  const FileNames& names_;
  Patience patience_{kMostLooking};
  const std::function<bool()> over_ = [this] { return patience_.Over(); };
  const std::function<bool()> never_ = [] { return false; };
  std::string path_;
  std::uint32_t owner_ = 0;
  bool scanned_ = false;
  PreviousRun run_;
};

}  // namespace

PreviousRun LookAtPreviousRun(const FileNames& names) {
  return Look(names).Run();
}

std::uint32_t NewestRecording(const FileNames& names, const FileNames::Numbers& numbers) {
  const Patience patience(kMostLooking);
  std::uint32_t owner = 0;
  for (const std::uint32_t number : numbers.recordings) {
    if (patience.Over() || LookAtEarlierFile(names.PathOf(number), owner) == EarlierFile::kRecording)
      return number;
  }
  return 0;
}

}  // namespace store
