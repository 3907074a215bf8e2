#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "Declarations.h"
#include "FindFiles.h"
#include "Output.h"
#include "RangeOptions.h"
#include "RecordReader.h"
#include "RowFormat.h"

namespace reader {
namespace {

constexpr int kLookMs = 250;

struct FollowOptions {
  Recordings recordings;
  SourceOption source;
  FormatOption format;
};

// Detects changes of a recording and its WAL by inode, size and modification time.
class Changes {
 public:
  bool Seen(const std::string& path) {
    std::array<std::int64_t, 8> now{};
    std::size_t i = 0;
    for (const char* suffix : {"", "-wal"}) {
      struct stat status {};
      const bool there = stat((path + suffix).c_str(), &status) == 0;
      now[i++] = there ? status.st_mtim.tv_sec : 0;
      now[i++] = there ? status.st_mtim.tv_nsec : 0;
      now[i++] = there ? static_cast<std::int64_t>(status.st_size) : -1;
      now[i++] = there ? static_cast<std::int64_t>(status.st_ino) : 0;
    }
    return std::exchange(last_, now) != now;
  }
  void Forget() { last_ = {}; }

 private:
  std::array<std::int64_t, 8> last_{};
};

// Follows the newest recording. Opens it only while reading, so that waiting never holds up the writer.
class Follower {
 public:
  Follower(const FollowOptions& options, Output& out)
      : options_(options),
        format_(MakeRowFormat(options.format.Name(), options.source.Selected())),
        out_(out) {}

  // Starts after the last record; there may be no record yet.
  bool Begin(Messages& messages) {
    for (const std::string& path : options_.recordings.Paths()) {
      if (!std::filesystem::exists(path)) messages.Problem(path + ": no such file or directory");
    }
    if (messages.Status() != 0) return false;
    const std::vector<Run> runs = options_.recordings.Find(quiet_);
    run_ = static_cast<int>(runs.size());
    if (!runs.empty()) {
      path_ = runs.back().files.back();
      lastSeq_ = runs.back().lastSeq;
    }
    format_->Begin(out_.Text());
    return true;
  }

  // Reads the new records of the current file and of the files after it.
  void Look() {
    const std::vector<std::string> files = FindFiles(options_.recordings.Paths(), quiet_);
    if (changes_.Seen(path_)) Read();
    auto next = std::find(files.begin(), files.end(), path_);
    next = next == files.end() ? files.begin() : next + 1;
    for (; next != files.end() && *next != path_ && GoTo(*next); ++next) Read();
  }

 private:
  // Returns false while the file has no records.
  bool GoTo(const std::string& path) {
    const std::vector<Run> runs = FindRuns({path}, quiet_);
    if (runs.empty()) return false;
    if (!runs.front().beginIsMissing) ++run_;
    path_ = path;
    lastSeq_ = -1;
    return true;
  }

  void Read() {
    if (path_.empty()) return;
    RecordReader reader(path_, {options_.source.Selected(), format_->WantsText(), lastSeq_}, quiet_);
    if (!reader.Open()) {  // the writer may be closing it
      changes_.Forget();
      return;
    }
    for (Row row; reader.Next(row);) {
      row.run = run_;
      lastSeq_ = row.seq;
      format_->Append(row, out_.Text());
    }
  }

  const FollowOptions& options_;
  std::unique_ptr<RowFormat> format_;
  Output& out_;
  Messages quiet_{[](const std::string&) {}};  // a file that is being created is no problem
  Changes changes_;
  std::string path_;
  int run_ = 0;
  std::int64_t lastSeq_ = -1;
};

// Waits for kLookMs. Returns true if the reader of the output is gone.
bool Unread() {
  pollfd out{STDOUT_FILENO, 0, 0};
  return poll(&out, 1, kLookMs) > 0 && (out.revents & (POLLERR | POLLHUP)) != 0;
}

int Follow(const FollowOptions& options) {
  Messages messages;
  Output out(options.format.OutputKind());
  Follower follower(options, out);
  if (!follower.Begin(messages)) return kFinding;
  do {
    follower.Look();
  } while (out.Flush() && !Unread());
  return out.Good() ? kGood : kFinding;
}

}  // namespace

Action DeclareFollow(CLI::App& app) {
  auto options = std::make_shared<FollowOptions>();
  AddRecordings(app, options->recordings);
  options->source.Declare(app);
  options->format.Declare(app);
  app.footer("Runs until it is interrupted.\nSOURCES: " + SelectionHelp() +
             ".\n"
             "Examples:\n"
             "  metadata follow\n"
             "  metadata follow --source events,inputs\n"
             "  metadata follow --format jsonl | jq --unbuffered -r .source");
  return [options] { return Follow(*options); };
}

}  // namespace reader
