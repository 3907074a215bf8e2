#include "Replay.h"

#include <algorithm>
#include <utility>

#include "Encode.h"
#include "Verbs.h"
#include "system/Systick.h"

namespace bench {

using reader::EventKind;

namespace {

// The time for the start before the first event.
constexpr std::uint32_t kStartMs = 1000;

// Limits ticks of damaged recordings: some months.
constexpr std::int64_t kLongestMs = 10'000'000'000;

// The parts of an event are rows of several sources; the radar's is complete with its speed.
bool Selects(const reader::Selection& selection, const Row& row) {
  if (row.source == "speed radar") return selection.Selects("radar", "radar 1");
  return selection.Selects(row.table, row.source);
}

bool IsEvent(const Row& row) {
  return row.event == EventKind::kEvent && FindRowKind(row.table) != nullptr;
}

}  // namespace

Replay::Replay(reader::Run run, reader::Range range, HowToPlay how, reader::Messages& messages)
    : run_(std::move(run)),
      name_("of " + run_.files.front()),
      range_(range),
      options_(std::move(how)),
      messages_(messages) {}

bool Replay::IsPlayed(const Row& row) const {
  if (options_.only && !Selects(*options_.only, row)) return false;
  return !options_.without || !Selects(*options_.without, row);
}

// The last arrival that is played, nearly.
std::int64_t Replay::EndTick() const {
  if (!range_.to) return run_.lastTick;
  const bool byUtc = range_.to->by == reader::Position::By::kUtc;
  const std::int64_t tick = byUtc ? run_.firstTick + range_.to->value - run_.firstUtcMs : range_.to->tick;
  return std::min(run_.lastTick, tick);
}

// Rows up to the first full state, or without one up to the first event, and up to --from, tell the values at
// the start.
Replay::Begun Replay::Begin() {
  ReadToBegin(true);
  Begun begun = Begun::kYes;
  if (!hasRow_ && !full_) {
    ReadToBegin(false);
    begun = hasRow_ ? Begun::kWithoutFullState : Begun::kNoStart;
  }
  beginTick_ = row_.tick;
  const bool isOutside = (range_.from && !hasRow_) || (range_.to && hasRow_ && range_.to->Compare(row_) > 0);
  return isOutside && begun != Begun::kNoStart ? Begun::kOutside : begun;
}

void Replay::ReadToBegin(bool needsFullState) {
  reader_ = std::make_unique<reader::RunReader>(std::vector{run_}, nullptr, true, messages_);
  items_ = ItemsOfRows();
  full_ = false;
  for (hasRow_ = reader_->Next(row_); hasRow_; hasRow_ = reader_->Next(row_)) {
    const bool restated = row_.event == EventKind::kRestated;
    full_ = full_ || restated;
    const bool started = needsFullState ? full_ && !restated : IsEvent(row_);
    if (started && (!range_.from || range_.from->Compare(row_) >= 0)) break;
    if (IsPlayed(row_)) (void)items_.Take(row_);
  }
}

bench::Drive Replay::Drive() {
  bench::Drive drive;
  drive.name = name_;
  if (options_.moveTicks) {
    drive.beginTick = Systick().SystemTick() + kStartMs;
    shiftMs_ = *drive.beginTick - static_cast<std::uint32_t>(beginTick_);
  }
  drive.endsInKill = endsInKill_;
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
    return {"bookmark", std::to_string(ItemsOfRows::Moved(TickOf(row), shiftMs_))};
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
  (void)Begin();
  again_ = items_.FirstValues(shiftMs_);
}

}  // namespace bench
