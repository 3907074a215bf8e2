#include "Runs.h"

#include <algorithm>
#include <utility>

#include "Catalogue.h"
#include "FileClock.h"
#include "FindFiles.h"
#include "Recording.h"
#include "Row.h"

namespace reader {
namespace {

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

// Notes a schema other than the current one, but not for a file without tables, which is just being created.
void SaySchema(const Recording& file, Messages& messages) {
  if (file.Tables().tables.empty()) return;
  const int version = file.Tables().schemaVersion;
  const auto differences = Differences(file.Tables());
  if (version == CurrentCatalogue().schemaVersion && differences.empty()) return;
  messages.Note(file.Path() + ": schema " + std::to_string(version) + ", this program knows " +
                std::to_string(CurrentCatalogue().schemaVersion) + ": " +
                (differences.empty() ? "nothing is missing" : Joined(differences)));
}

// Position of a file in its run, used to join files to runs.
struct Span {
  static constexpr std::int64_t kNone = -1;
  std::shared_ptr<Recording> copy;
  bool live = false;
  std::int64_t firstSeq = kNone;
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  std::int64_t firstTick = 0;
  std::int64_t firstUtcMs = kNoUtc;
};

// Open private copies that are kept. Each takes as much of TMPDIR as its recording, so further files are
// copied again when they are read.
constexpr long kMostCopies = 8;

void FindFirst(Recording& file, Span& span) {
  for (const RecordTable& table : file.Tables().tables) {
    Statement first;
    const std::string sql = "SELECT seq, tick FROM main." + Quoted(table.name) + " ORDER BY seq LIMIT 1";
    if (!Ok(first.Prepare(file.Sql().Handle(), sql)) || first.Step() != SqliteCode::kRow) continue;
    const std::int64_t firstSeq = WithinCount(first.Integer(0));
    if (span.firstSeq != Span::kNone && firstSeq >= span.firstSeq) continue;
    span.firstSeq = firstSeq;
    span.firstTick = WithinTime(first.Integer(1));
  }
}

void FindUtc(Recording& file, Span& span) {
  FileClock clock;
  clock.Read(file.Sql());
  const std::int64_t offsetMs = clock.OffsetAt(span.firstSeq);
  if (offsetMs != kNoUtc) span.firstUtcMs = span.firstTick + offsetMs;
}

bool LookAt(const std::string& path, Span& span, Messages& messages) {
  const auto opened = std::make_shared<Recording>();
  Recording& file = *opened;
  std::string error;
  if (!file.Open(path, error)) {
    messages.Problem(path + ": " + error);
    return false;
  }
  if (file.CutShort()) messages.Problem(path + ": it is cut short; what is left is read");
  FindFirst(file, span);
  if (file.MissesWal() && span.firstSeq == Span::kNone) {
    messages.Problem(path + ": the file " + path + "-wal is missing, and all that was recorded with it");
  } else if (file.MissesWal())
    messages.Note(path + ": the file " + path +
                  "-wal is missing; what was recorded last may be gone with it");
  SaySchema(file, messages);
  span.live = file.HowItIs() == Recording::Kind::kLive;
  if (file.HowItIs() == Recording::Kind::kLeftOver) span.copy = opened;
  FindUtc(file, span);
  span.lastSeq = WithinCount(file.Committed("last_seq", 0));
  span.lastTick = WithinTime(file.Committed("last_tick", 0));
  return true;
}

void Append(const std::string& path, const Span& span, long& copies, Run& run) {
  const bool isKept = span.copy != nullptr && ++copies <= kMostCopies;
  run.files.push_back(path);
  run.copies.push_back(isKept ? span.copy : nullptr);
  run.live = span.live;
  run.lastSeq = span.lastSeq;
  run.lastTick = span.lastTick;
  run.records = WithinCount(run.records + span.lastSeq - span.firstSeq + 1);
}

// A run without UTC stays after the run before it.
void SortByTime(std::vector<Run>& runs) {
  std::vector<std::pair<std::int64_t, Run>> timed;
  std::int64_t before = kNoUtc;
  for (Run& run : runs) {
    before = run.firstUtcMs == kNoUtc ? before : run.firstUtcMs;
    timed.emplace_back(before, std::move(run));
  }
  std::stable_sort(timed.begin(), timed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (std::size_t i = 0; i < runs.size(); ++i) {
    runs[i] = std::move(timed[i].second);
    runs[i].number = static_cast<int>(i) + 1;
  }
}

}  // namespace

std::vector<Run> FindRuns(const std::vector<std::string>& files, Messages& messages) {
  std::vector<Run> runs;
  Span before;
  std::string baseBefore;
  long copies = 0;
  for (const std::string& path : files) {
    Span span;
    if (!LookAt(path, span, messages)) continue;
    if (span.firstSeq == Span::kNone) {
      messages.Note(path + ": nothing was recorded in it");
      continue;
    }
    const std::string base = BaseAndNumber(path).first;
    const bool goesOn = !runs.empty() && base == baseBefore && span.firstSeq > before.lastSeq &&
                        span.firstSeq > 1 && span.firstTick >= before.lastTick;
    if (!goesOn) {
      runs.emplace_back();
      runs.back().beginIsMissing = span.firstSeq > 1;
      runs.back().firstTick = span.firstTick;
      runs.back().firstUtcMs = span.firstUtcMs;
    }
    Append(path, span, copies, runs.back());
    before = span;
    baseBefore = base;
  }
  SortByTime(runs);
  return runs;
}

}  // namespace reader
