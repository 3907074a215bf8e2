#include "PlayedRuns.h"

#include <cstdio>
#include <utility>

#include "FindFiles.h"
#include "RunReader.h"

namespace bench {

namespace {

void SayLine(const std::string& text) {
  (void)std::fprintf(stderr, "%s\n", text.c_str());
}

}  // namespace

PlayedRuns::PlayedRuns(ReplayOptions options)
    : options_(std::move(options)), messages_([this](const std::string& text) {
        if (said_.insert(text).second) SayLine(text);
      }) {}

bool PlayedRuns::Find() {
  const std::vector<reader::Run> found =
      reader::FindRuns(reader::FindFiles(options_.recordings, messages_), messages_);
  if (options_.from && !(range_.from = Resolve(*options_.from, found, messages_))) return false;
  if (options_.to && !(range_.to = Resolve(*options_.to, found, messages_))) return false;
  found_ = found.size();
  for (const reader::Run& run : found) {
    if (options_.run != 0 && options_.run != run.number) continue;
    runs_.push_back({run, Judge(run)});
  }
  if (runs_.empty() && found_ > 0) SayLine("there is no such run; the last is " + std::to_string(found_));
  if (runs_.empty()) SayLine("there is nothing to play");
  return !runs_.empty();
}

// Reads the whole run, so that all that is wrong with it is said before it is played. Returns whether it has
// a clean end.
bool PlayedRuns::Judge(const reader::Run& run) {
  reader::RunReader reader({run}, nullptr, false, messages_);
  std::int64_t lost = 0;
  bool hasEnd = false;
  bool isCopy = false;
  for (Row row; reader.Next(row);) {
    hasEnd = hasEnd || row.table == "run_end";
    isCopy = isCopy || row.table == "copy";
    if (row.table == "loss") lost = reader::WithinCount(lost + reader::WithinCount(row.Number("count")));
  }
  if (run.beginIsMissing && !isCopy) Say(run, "the begin of the run is in a file that is not given");
  if (lost > 0) {
    Say(run, std::to_string(lost) + " records were lost when it was recorded; they cannot be played");
  }
  if (hasEnd || isCopy || run.live) return true;
  Say(run, "the recording was cut off; MetadataMgr is killed at the end");
  return range_.to.has_value();
}

void PlayedRuns::Say(const reader::Run& run, const std::string& text) const {
  SayLine((found_ > 1 ? "run " + std::to_string(run.number) + ": " : "") + text);
}

std::unique_ptr<Replay> PlayedRuns::Begin(std::size_t index) {
  const PlayedRun& played = runs_[index];
  HowToPlay how = options_.how;
  how.loop = how.loop && runs_.size() == 1;
  auto replay = std::make_unique<Replay>(played.run, range_, std::move(how), messages_);
  replay->EndsInKill(!played.cleanEnd);
  if (found_ > 1) {
    replay->AddToName(", run " + std::to_string(played.run.number) + " of " + std::to_string(found_));
  }
  switch (replay->Begin()) {
    case Replay::Begun::kNoStart:
      Say(played.run, "the recording has no full state and no events; there is nothing to play");
      return nullptr;
    case Replay::Begun::kOutside:
      return nullptr;
    case Replay::Begun::kWithoutFullState:
      Say(played.run, "the recording has no full state; it is played from its first event on");
      return replay;
    case Replay::Begun::kYes:
      return replay;
  }
  return nullptr;
}

}  // namespace bench
