#include "Replay.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Encode.h"
#include "FindFiles.h"
#include "Verbs.h"
#include "system/Systick.h"

namespace bench {

using reader::EventKind;

namespace {

// The time for the start before the first event.
constexpr std::uint32_t kStartMs = 1000;

// Limits ticks of damaged recordings: some months.
constexpr std::int64_t kLongestMs = 10'000'000'000;

void Say(const std::string& text) {
  (void)std::fprintf(stderr, "%s\n", text.c_str());
}

// The parts of an event are rows of several sources; the radar's is complete with its speed.
bool Selects(const reader::Selection& selection, const Row& row) {
  if (row.source == "speed radar") return selection.Selects("radar", "radar 1");
  return selection.Selects(row.table, row.source);
}

}  // namespace

Replay::Replay(ReplayOptions options) : options_(std::move(options)), messages_(Say) {}

bool Replay::Open() {
  runs_ = reader::FindRuns(reader::FindFiles(options_.recordings, messages_), messages_);
  if (runs_.size() > 1) {
    Say("there are " + std::to_string(runs_.size()) + " runs; the first is played");
    runs_.resize(1);
  }
  if (runs_.empty()) {
    Say("there is nothing to play");
    return false;
  }
  if (options_.from && !(range_.from = Resolve(*options_.from, runs_, messages_))) return false;
  if (options_.to && !(range_.to = Resolve(*options_.to, runs_, messages_))) return false;
  Judge();
  return Begin();
}

// Says first what the recording lacks.
void Replay::Judge() {
  reader::Selection ends;
  std::string error;
  (void)ends.Read("run,loss,copy", error);
  reader::RunReader reader(runs_, &ends, false, messages_);
  std::int64_t lost = 0;
  bool isCopy = false;
  for (Row row; reader.Next(row);) {
    cleanEnd_ = cleanEnd_ || row.table == "run_end";
    isCopy = isCopy || row.table == "copy";
    if (row.table == "loss") lost = reader::WithinCount(lost + reader::WithinCount(row.Number("count")));
  }
  const reader::Run& run = runs_.front();
  if (run.beginIsMissing && !isCopy) Say("the begin of the run is in a file that is not given");
  if (lost > 0) Say(std::to_string(lost) + " records were lost when it was recorded; they cannot be played");
  if (!cleanEnd_ && !isCopy && !run.live) Say("the recording was cut off; MetadataMgr is killed at the end");
  cleanEnd_ = cleanEnd_ || isCopy || run.live || range_.to.has_value();
}

bool Replay::IsPlayed(const Row& row) const {
  if (options_.only && !Selects(*options_.only, row)) return false;
  return !options_.without || !Selects(*options_.without, row);
}

// The last arrival that is played, nearly.
std::int64_t Replay::EndTick() const {
  const reader::Run& run = runs_.front();
  if (!range_.to) return run.lastTick;
  const bool byUtc = range_.to->by == reader::Position::By::kUtc;
  const std::int64_t tick = byUtc ? run.firstTick + range_.to->value - run.firstUtcMs : range_.to->tick;
  return std::min(run.lastTick, tick);
}

// Rows up to the first full state, and up to --from, tell the values at the start.
bool Replay::Begin() {
  reader_ = std::make_unique<reader::RunReader>(runs_, nullptr, true, messages_);
  items_ = ItemsOfRows();
  bool full = false;
  for (hasRow_ = reader_->Next(row_); hasRow_; hasRow_ = reader_->Next(row_)) {
    const bool restated = row_.event == EventKind::kRestated;
    full = full || restated;
    if (full && !restated && (!range_.from || range_.from->Compare(row_) >= 0)) break;
    if (IsPlayed(row_)) (void)items_.Take(row_);
  }
  if (!full) Say("the recording ends before the start was complete; there is nothing to play");
  beginTick_ = row_.tick;
  return full;
}

bench::Drive Replay::Drive() {
  bench::Drive drive;
  drive.name = "of " + runs_.front().files.front();
  if (options_.moveTicks) {
    drive.beginTick = Systick().SystemTick() + kStartMs;
    shiftMs_ = *drive.beginTick - static_cast<std::uint32_t>(beginTick_);
  }
  drive.endsInKill = !cleanEnd_;
  if (!options_.loop) drive.length = std::chrono::milliseconds(EndTick() - beginTick_);
  std::vector<Words> before = items_.FirstValues(shiftMs_);
  if (items_.Recording()) before.push_back({"direct", "record", "start"});
  for (const Words& words : before) {
    std::string error;
    if (!ParseCommand(words, drive.before.emplace_back(), error)) drive.before.pop_back();
  }
  drive.next = [this](DriveLine& line) { return Next(line); };
  return drive;
}

bool Replay::Next(DriveLine& line) {
  if (!begun_ && options_.moveTicks && options_.beginIsOpen) {
    shiftMs_ = Systick().SystemTick() - static_cast<std::uint32_t>(beginTick_);
  }
  begun_ = true;
  for (;;) {
    if (again_.empty() && NextEvent(line)) return true;
    if (again_.empty() && options_.loop && lastMs_ > roundMs_) PlayAgain();
    if (again_.empty()) return false;
    std::string error;
    line.at = std::chrono::milliseconds(roundMs_);
    const bool possible = ParseCommand(again_.back(), line.command, error);
    again_.pop_back();
    if (possible) return true;
  }
}

bool Replay::NextEvent(DriveLine& line) {
  for (; hasRow_; hasRow_ = reader_->Next(row_)) {
    if (range_.to && range_.to->Compare(row_) > 0) break;
    if (row_.event == EventKind::kRestated || !IsPlayed(row_)) continue;
    const Words words = WordsOf(row_);
    std::string error;
    if (words.empty() || !ParseCommand(words, line.command, error)) continue;
    lastMs_ = std::clamp(roundMs_ + row_.tick - beginTick_, lastMs_, std::max(lastMs_, kLongestMs));
    line.at = std::chrono::milliseconds(lastMs_);
    line.text = reader::Printable(std::string(row_.source) + ": " + std::string(row_.text));
    hasRow_ = reader_->Next(row_);
    return true;
  }
  return false;
}

Words Replay::WordsOf(const Row& row) {
  if (row.table == "bookmark") {
    return {"bookmark", std::to_string(ItemsOfRows::Moved(ItemsOfRows::TickOf(row), shiftMs_))};
  }
  const Source* source = items_.Take(row);
  return source == nullptr ? Words() : items_.Event(*source, shiftMs_);
}

// A further round begins a second after the last event, with the values of the begin.
void Replay::PlayAgain() {
  constexpr std::int64_t kPauseMs = 1000;
  const std::int64_t roundMs = lastMs_ + kPauseMs;
  if (options_.moveTicks) shiftMs_ += static_cast<std::uint32_t>(roundMs - roundMs_);
  roundMs_ = lastMs_ = roundMs;
  if (Begin()) again_ = items_.FirstValues(shiftMs_);
}

}  // namespace bench
