#include "CheckFile.h"

#include <algorithm>

#include "Recording.h"

namespace reader {
namespace {

// Reports the first problem that SQLite's integrity check finds.
void CheckIntegrity(Recording& file, Findings& findings) {
  Statement check;
  SqliteCode code = check.Prepare(file.Sql().Handle(), "PRAGMA main.integrity_check(1)");
  if (Ok(code)) code = check.Step();
  if (code == SqliteCode::kRow && check.Text(0) == "ok") return;
  std::string text = code == SqliteCode::kRow ? std::string(check.Text(0)) : file.Sql().Error();
  constexpr std::string_view kHeading = "*** in database main ***\n";
  if (text.starts_with(kHeading)) text.erase(0, kHeading.size());
  findings.Add(file.Path(), "integrity", "damaged: " + text);
}

std::int64_t HighestSeq(Recording& file) {
  std::int64_t highest = 0;
  for (const RecordTable& table : file.Tables().tables) {
    highest = std::max(highest, file.Sql().Integer("SELECT max(seq) FROM main." + Quoted(table.name), 0));
  }
  return highest;
}

}  // namespace

void CheckFile(const std::string& path, const std::shared_ptr<Recording>& copy, FileEnds& ends,
               Findings& findings) {
  Recording own;
  std::string error;
  if (copy == nullptr && !own.Open(path, error)) return;  // FindRuns has reported it
  Recording& file = copy != nullptr ? *copy : own;
  if (file.MissesWal())
    findings.Add(path, "wal",
                 "the file " + path + "-wal is missing; what was recorded last may be gone with it");
  CheckIntegrity(file, findings);
  const bool isLive = file.HowItIs() == Recording::Kind::kLive;
  if (isLive) (void)file.Sql().Execute("BEGIN");  // one consistent snapshot
  FileEnd end;
  end.lastSeq = file.Committed("last_seq", -1);
  end.lastTick = file.Committed("last_tick", -1);
  // No count(*): SQLite counts a whole table in one operation, so no limit ends it if pages lead to each
  // other.
  end.clean = file.Sql().Integer("SELECT EXISTS(SELECT 1 FROM main.run_end)", 0) != 0;
  const std::int64_t highest = HighestSeq(file);
  if (isLive) (void)file.Sql().Execute("COMMIT");
  ends[file.Name()] = end;
  if (end.lastSeq < 0) {
    findings.Add(path, "progress", "no commit is noted");
  } else if (end.lastSeq != highest) {
    findings.Add(path, "progress",
                 "record " + std::to_string(end.lastSeq) + " was committed last, but the last is " +
                     std::to_string(highest));
  }
}

}  // namespace reader
