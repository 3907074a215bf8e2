#include "RecordedDrive.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string_view>

#include "FindFiles.h"
#include "Messages.h"
#include "RowKinds.h"
#include "RunReader.h"
#include "Runs.h"
#include "Verbs.h"

namespace bench {

using reader::EventKind;
using reader::FindFiles;
using reader::FindRuns;
using reader::Messages;
using reader::Run;
using reader::RunReader;

namespace {

std::string SecondsText(std::int64_t ms) {
  char time[32];
  (void)std::snprintf(time, sizeof time, "%.3f", static_cast<double>(ms) / 1000);
  return time;
}

class Writer {
 public:
  explicit Writer(RecordedDrive& drive) : drive_(drive) {}

  void Take(const Row& row) {
    lastTick_ = row.tick;
    full_ = full_ || row.event == EventKind::kRestated;
    const RowKind* kind = row.event == EventKind::kRestated ? nullptr : FindRowKind(row.table);
    if (kind == nullptr) return;
    std::istringstream commands(kind->line(values_, row));
    for (std::string command; std::getline(commands, command);) Add(row.tick, command);
  }

  void End() {
    constexpr std::int64_t kPauseMs = 1000;  // "quit" overtakes messages that servers still send
    if (drive_.lines > 0) Add(lastTick_ + kPauseMs, "quit");
  }

 private:
  // Values up to the first full state are values at the start.
  void Add(std::int64_t tick, const std::string& command) {
    Command parsed;
    std::string error;
    if (!ParseCommand(SplitWords(command), parsed, error)) {
      drive_.problems.push_back("left out, " + command + ": " + error);
      return;
    }
    if (!full_) {
      const bool possible = parsed.verb->when != Verb::kFullRun && !command.starts_with("record ");
      if (possible) Write("before", command);
      return;
    }
    if (beginTick_ < 0) beginTick_ = tick;
    Write(SecondsText(tick - beginTick_), command);
  }

  void Write(const std::string& when, const std::string& command) {
    drive_.text += when + " " + command + "\n";
    ++drive_.lines;
  }

  RecordedDrive& drive_;
  LineValues values_;
  bool full_ = false;
  std::int64_t beginTick_ = -1;
  std::int64_t lastTick_ = 0;
};

}  // namespace

// Ends a second after the last line, as a drive of rows does.
RecordedDrive ExactDriveOf(Replay& replay) {
  constexpr std::chrono::milliseconds kPause{1000};
  const Drive played = replay.Drive();
  RecordedDrive drive;
  const auto write = [&drive](const std::string& when, const Words& words) {
    drive.text += when + " " + JoinWords(words) + "\n";
    ++drive.lines;
  };
  for (const Command& command : played.before) write("before", command.words);
  DriveLine line{};
  while (played.next(line)) write(SecondsText(line.at.count()), line.command.words);
  write(SecondsText((line.at + kPause).count()), {"quit"});
  return drive;
}

std::string OtherRuns(std::size_t count) {
  return "there are " + std::to_string(count) + " runs; the drive is of the first";
}

RecordedDrive DriveOf(const std::vector<std::string>& paths, int number) {
  RecordedDrive drive;
  Messages messages([&drive](const std::string& text) { drive.problems.push_back(text); });
  std::vector<Run> runs = FindRuns(FindFiles(paths, messages), messages);
  if (number != 0) std::erase_if(runs, [number](const Run& run) { return run.number != number; });
  if (runs.size() > 1) {
    drive.problems.push_back(OtherRuns(runs.size()));
    runs.resize(1);
  }
  RunReader reader(runs, nullptr, false, messages);
  Writer writer(drive);
  for (Row row; reader.Next(row);) writer.Take(row);
  writer.End();
  return drive;
}

}  // namespace bench
