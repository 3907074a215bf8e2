#include "Runs.h"

#include <algorithm>
#include <filesystem>
#include <tuple>
#include <utility>

namespace fs = std::filesystem;

namespace {

// "metadata.000012.db": what stands before the number, and the number; 0 for another name.
std::pair<std::string, std::uint64_t> BaseAndNumber(const std::string& path) {
  constexpr std::string_view kSuffix = ".db";
  constexpr std::size_t kMinDigits = 6;
  constexpr std::size_t kMaxDigits = 9;
  if (!path.ends_with(kSuffix)) return {path, 0};
  const std::size_t end = path.size() - kSuffix.size();
  const std::size_t dot = path.rfind('.', end - 1);
  if (end == 0 || dot == std::string::npos) return {path, 0};
  const std::string digits = path.substr(dot + 1, end - dot - 1);
  const bool isNumber = digits.size() >= kMinDigits && digits.size() <= kMaxDigits &&
                        digits.find_first_not_of("0123456789") == std::string::npos;
  if (!isNumber) return {path, 0};
  return {path.substr(0, dot), std::stoull(digits)};
}

void FindIn(const std::string& directory, std::vector<std::string>& files, Messages& messages) {
  std::vector<std::string> found;
  std::error_code failure;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, failure)) {
    if (BaseAndNumber(entry.path().string()).second != 0) found.push_back(entry.path().string());
  }
  if (failure) {
    messages.Problem(directory + ": " + failure.message());
  } else if (found.empty()) {
    messages.Problem(directory + ": no recording in it");
  }
  files.insert(files.end(), found.begin(), found.end());
}

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

std::vector<std::string> FindFiles(const std::vector<std::string>& paths, Messages& messages) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    std::error_code failure;
    if (fs::is_directory(path, failure)) {
      FindIn(path, files, messages);
    } else if (fs::exists(path, failure)) {
      files.push_back(path);
    } else {
      messages.Problem(path + ": " + (failure ? failure.message() : "no such file"));
    }
  }
  std::stable_sort(files.begin(), files.end(), [](const std::string& a, const std::string& b) {
    return BaseAndNumber(a) < BaseAndNumber(b);
  });
  files.erase(std::unique(files.begin(), files.end()), files.end());
  return files;
}

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

RunReader::RunReader(std::vector<Run> runs, const Selection* selection, bool text, Messages& messages)
    : runs_(std::move(runs)), selection_(selection), text_(text), messages_(messages) {
  for (const Run& run : runs_) total_ = WithinCount(total_ + run.records);
}

bool RunReader::NextFile() {
  reader_.reset();
  while (run_ < runs_.size() && file_ == runs_[run_].files.size()) {
    ++run_;
    file_ = 0;
  }
  if (run_ == runs_.size()) return false;
  reader_ = std::make_unique<RecordReader>(runs_[run_].files[file_++],
                                           RecordReader::Wanted{selection_, text_, -1}, messages_);
  if (!reader_->Open()) reader_.reset();
  return true;
}

bool RunReader::Next(Row& row) {
  for (;;) {
    if (reader_ != nullptr && reader_->Next(row)) {
      row.run = runs_[run_].number;
      if (progress_) progress_->Tell(++done_, total_);
      return true;
    }
    if (!NextFile()) return false;
  }
}

void RunReader::Pause() {
  if (reader_ != nullptr) reader_->Pause();
}
