#include "Runs.h"

#include <algorithm>

#include "Catalogue.h"
#include "FindFiles.h"
#include "Recording.h"
#include "Row.h"

namespace {

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

// Not of a file that is just being begun.
void SaySchema(const Recording& file, Messages& messages) {
  if (file.Tables().tables.empty()) return;
  const int version = file.Tables().schemaVersion;
  const auto differences = Differences(file.Tables());
  if (version == CurrentCatalogue().schemaVersion && differences.empty()) return;
  messages.Note(file.Path() + ": schema " + std::to_string(version) + ", this program knows " +
                std::to_string(CurrentCatalogue().schemaVersion) + ": " +
                (differences.empty() ? "nothing is missing" : Joined(differences)));
}

// What tells how files belong together.
struct Span {
  static constexpr std::int64_t kNone = -1;
  bool live = false;
  std::int64_t firstSeq = kNone;
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  std::int64_t firstTick = 0;
};

bool LookAt(const std::string& path, Span& span, Messages& messages) {
  Recording file;
  std::string error;
  if (!file.Open(path, error)) {
    messages.Problem(path + ": " + error);
    return false;
  }
  if (file.CutShort()) messages.Problem(path + ": it is cut short; what is left is read");
  SaySchema(file, messages);
  span.live = file.HowItIs() == Recording::Kind::kLive;
  for (const RecordTable& table : file.Tables().tables) {
    Statement first;
    if (first.Prepare(file.Sql().Handle(),
                      "SELECT seq, tick FROM \"" + table.name + "\" ORDER BY seq LIMIT 1") != SQLITE_OK ||
        first.Step() != SQLITE_ROW) {
      continue;
    }
    const std::int64_t firstSeq = WithinCount(first.Integer(0));
    if (span.firstSeq != Span::kNone && firstSeq >= span.firstSeq) continue;
    span.firstSeq = firstSeq;
    span.firstTick = WithinTime(first.Integer(1));
  }
  span.lastSeq = WithinCount(file.Sql().Integer("SELECT last_seq FROM progress", 0));
  span.lastTick = WithinTime(file.Sql().Integer("SELECT last_tick FROM progress", 0));
  return true;
}

}  // namespace

std::vector<Run> FindRuns(const std::vector<std::string>& files, Messages& messages) {
  std::vector<Run> runs;
  Span before;
  std::string baseBefore;
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
      runs.back().number = static_cast<int>(runs.size());
      runs.back().beginIsMissing = span.firstSeq > 1;
    }
    runs.back().files.push_back(path);
    runs.back().live = span.live;
    runs.back().lastSeq = span.lastSeq;
    runs.back().records = WithinCount(runs.back().records + span.lastSeq - span.firstSeq + 1);
    before = span;
    baseBefore = base;
  }
  return runs;
}
