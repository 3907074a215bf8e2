#include "SealCheck.h"

#include <algorithm>
#include <utility>

#include "AsMade.h"
#include "FindFiles.h"
#include "Recording.h"
#include "Row.h"
#include "Schema.h"
#include "SealRow.h"
#include "SealedRows.h"

namespace reader {
namespace {

using seal::Verdict;

bool Open(Recording& file, const std::string& path, std::string& why) {
  if (!file.Open(path, why)) return false;
  // One snapshot of the seals and all tables.
  if (file.HowItIs() == Recording::Kind::kLive) (void)file.Sql().Execute("BEGIN");
  return true;
}

void Set(SealFinding& finding, Verdict verdict, std::string why) {
  finding.verdict = verdict;
  finding.why = std::move(why);
}

// Whether the last step of a statement failed for a reason that says nothing about the file's content.
bool ReadingFailed(Recording& file) {
  const int rc = sqlite3_errcode(file.Sql().Handle()) & 0xFF;
  return rc == SQLITE_IOERR || rc == SQLITE_NOMEM || rc == SQLITE_INTERRUPT || rc == SQLITE_BUSY;
}

// The verdict of a file without seals.
void TellUnsealed(Recording& file, SealFinding& finding) {
  const bool isOld = file.Tables().schemaVersion < 2;
  std::int64_t records = 0;
  for (const RecordTable& table : file.Tables().tables) {
    if (records == 0)
      records = file.Sql().Integer("SELECT EXISTS(SELECT 1 FROM main." + Quoted(table.name) + ")", 1);
  }
  const bool isCopy = file.Sql().Integer("SELECT count(*) FROM main.copy", 0) == 1;
  finding.empty = records == 0;
  if (isOld || isCopy || file.Committed("last_seq", 0) != 0) {
    Set(finding, Verdict::kCannotTell, isCopy ? "not sealed: it is a copy" : "not sealed");
  } else if (records != 0) {
    Set(finding, Verdict::kAltered, "it has records, but no seal");
  } else {
    Set(finding, Verdict::kConsistent, "no records");
  }
}

std::string RunOf(Recording& file) {
  Statement run;
  if (!Ok(run.Prepare(file.Sql().Handle(), store::kReadRun)) || run.Step() != SqliteCode::kRow) return {};
  const auto id = run.Blob(0);
  return {id.begin(), id.end()};
}

}  // namespace

bool SealCheck::IsTrusted(const seal::PublicKey& root) const {
  return std::find(trusted_.begin(), trusted_.end(), root) != trusted_.end();
}

bool SealCheck::IsAsNoted(const seal::Place& place, const seal::PublicKey& root) {
  const bool isMeant = noted_ != nullptr && place.number == noted_->number;
  if (!isMeant || (!trusted_.empty() && !IsTrusted(root))) return true;
  noted_->found = seal::Fingerprint(place.hash) == noted_->fingerprint;
  return noted_->found;
}

SealCheck::Known SealCheck::LookAt(const std::string& path) {
  Known known;
  known.finding.path = path;
  known.chain = BaseAndNumber(path).first;
  Recording file;
  std::string why;
  if (!Open(file, path, why)) {
    Set(known.finding, Verdict::kCannotTell, why);
    return known;
  }
  Statement row;
  seal::Seal first;
  seal::NoteItems items;
  const bool isSealed = file.Tables().schemaVersion >= 2 &&
                        Ok(row.Prepare(file.Sql().Handle(), store::kReadSeals)) &&
                        row.Step() == SqliteCode::kRow;
  if (!isSealed) {
    TellUnsealed(file, known.finding);
    return known;
  }
  // What cannot be read here is found again, and told, when the file is followed.
  if (store::TakeSeal(row, first) && seal::ReadNote(first.note, items)) known.finding.root = items.file.root;
  known.finding.firstSeal = std::max<std::int64_t>(1, first.place.number);
  known.records = WithinCount(file.Committed("last_seq", 0)) - WithinCount(first.firstSeq);
  if (known.finding.root != seal::PublicKey{})
    known.chain.assign(known.finding.root.begin(), known.finding.root.end());
  return known;
}

std::vector<SealFinding> SealCheck::Verify(const std::vector<std::string>& paths) {
  std::vector<Known> files;
  files.reserve(paths.size());
  for (const std::string& path : paths) files.push_back(LookAt(path));
  for (const Known& file : files) total_ += std::max<std::int64_t>(0, file.records);
  std::stable_sort(files.begin(), files.end(), [](const Known& a, const Known& b) {
    return std::pair(a.chain, a.finding.root == seal::PublicKey{} ? 0 : a.finding.firstSeal) <
           std::pair(b.chain, b.finding.root == seal::PublicKey{} ? 0 : b.finding.firstSeal);
  });
  std::vector<SealFinding> findings;
  for (const Known& file : files) {
    if (file.finding.firstSeal == 0) {
      findings.push_back(file.finding);
    } else {
      Follow(file, findings);
    }
  }
  return findings;
}

void SealCheck::Follow(const Known& known, std::vector<SealFinding>& findings) {
  findings.push_back(known.finding);
  SealFinding& finding = findings.back();
  std::optional<seal::PublicKey> trusted;
  if (!trusted_.empty()) trusted = IsTrusted(finding.root) ? finding.root : trusted_.front();
  auto [chained, isNew] = chains_.try_emplace(known.chain, Chained{seal::Chain(trusted), 0});
  seal::Chain& chain = chained->second.chain;
  chain.BeginFile();
  Recording file;
  std::string why;
  if (!Open(file, finding.path, why)) {
    Set(finding, Verdict::kCannotTell, why);
  } else if (file.Tables().schemaVersion > store::kSchemaVersion) {
    Set(finding, Verdict::kCannotTell, "its schema is newer than this program");
  } else if (why = DifferenceFromMade(file); !why.empty()) {
    Set(finding, ReadingFailed(file) ? Verdict::kCannotTell : Verdict::kAltered, why);
  } else {
    FollowSeals(file, chain, finding);
  }
  if (!finding.why.empty()) chain.Break();
  if (finding.verdict == Verdict::kProven && file.MissesWal())
    Set(finding, Verdict::kTail, "its WAL is missing; what was recorded last may be gone with it");
  if (!isNew && chain.ProvesBefore() && trusted == finding.root) {
    SealFinding& before = findings[chained->second.before];
    const bool isTail = before.verdict == Verdict::kTail || before.verdict == Verdict::kConsistent;
    if (isTail && before.root == finding.root) Set(before, Verdict::kProven, "");
  }
  chained->second.before = findings.size() - 1;
}

// Adds the rows of a commit to its hash. Returns the fault, if there is one.
std::string SealCheck::TakeRows(const seal::Seal& seal, SealedRows& rows, seal::Chain& chain,
                                SealFinding& finding) {
  if (!rows.AtEnd() && rows.Seq() < seal.firstSeq)
    return "record " + std::to_string(rows.Seq()) + " before it is under no seal";
  while (!rows.AtEnd() && rows.Seq() <= seal.lastSeq) {
    if (!rows.Take(chain.Rows())) return rows.Fault();
    ++finding.records;
    progress_.Tell(++done_, total_);
  }
  return {};
}

void SealCheck::FollowSeals(Recording& file, seal::Chain& chain, SealFinding& finding) {
  SealedRows rows;
  Statement seals;
  seal::Seal seal;
  const auto fail = [&](const std::string& why) {
    Set(finding, ReadingFailed(file) ? Verdict::kCannotTell : Verdict::kAltered, why);
    finding.number = seal.place.number;
    finding.firstSeq = seal.firstSeq;
    finding.lastSeq = seal.lastSeq;
  };
  const std::string run = RunOf(file);
  if (!rows.Open(file.Sql())) return fail(rows.Fault());
  SqliteCode code = seals.Prepare(file.Sql().Handle(), store::kReadSeals);
  if (Ok(code)) code = seals.Step();
  for (; code == SqliteCode::kRow; code = seals.Step()) {
    if (!store::TakeSeal(seals, seal)) return fail("a seal cannot be read");
    const bool begun = chain.Begin(seal);
    if (begun && run != chain.RunId()) return fail("the id of its run is not the sealed one");
    if (const std::string why = begun ? TakeRows(seal, rows, chain, finding) : ""; !why.empty())
      return fail(why);
    if (!begun || !chain.End()) {
      fail(chain.Reason());
      finding.verdict = chain.FileVerdict();
      return;
    }
    if (!IsAsNoted(seal.place, finding.root)) return fail("it is not the seal that was noted");
  }
  if (code != SqliteCode::kDone) return fail("the seals cannot be read: " + ErrorText(code));
  if (!rows.AtEnd()) return fail("record " + std::to_string(rows.Seq()) + " after it is under no seal");
  Set(finding, chain.FileVerdict(), chain.Reason());
  const bool proves = finding.verdict != Verdict::kConsistent;
  finding.provenTo = proves ? chain.ProvenTo() : 0;
  finding.tail = chain.Tail();
  finding.lastSeal = chain.Last();
}

}  // namespace reader
