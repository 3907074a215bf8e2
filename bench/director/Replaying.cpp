#include <algorithm>

#include "Director.h"
#include "Pace.h"
#include "Processes.h"
#include "system/Systick.h"

// How a replay is played.

namespace bench {

using std::chrono::milliseconds;

namespace {

// Looks for news at least after this many lines, also when all of them are due.
constexpr std::size_t kLinesWithoutALook = 64;

}  // namespace

void Director::AwaitBegin() {
  if (!drive_.beginTick) return;
  const auto waitMs = static_cast<std::int32_t>(*drive_.beginTick - Systick().SystemTick());
  if (waitMs <= 0) return;
  (void)vehicle_.ReceiveUntil(Vehicle::Clock::now() + milliseconds(waitMs),
                              [this] { return vehicle_.MustEnd(); });
}

void Director::PlayReplay() {
  report_.DriveIsAt(milliseconds(0));
  Pace pace(report_, drive_.length);
  bool failed = false;
  for (DriveLine line; drive_.next(line);) {
    const bool look = failed || linesPlayed_ % kLinesWithoutALook == kLinesWithoutALook - 1;
    if (!AwaitDue(line.at, look, pace)) return;
    report_.DriveIsAt(line.at);
    ++linesPlayed_;
    failed = !Execute(line.command.words, {}).ok;
    pace.Played(line.at, line.text);
  }
  pace.End();
  EndReplay();
}

// Returns false if the run must end.
bool Director::AwaitDue(milliseconds at, bool look, Pace& pace) {
  const auto least = look ? Vehicle::Clock::now() + milliseconds(1) : report_.DriveBegin();
  Vehicle::Clock::time_point due;
  return !vehicle_.ReceiveUntil(due, [&] {
    pace.TakeKeys();
    due = std::max(pace.WhenDue(at), least);
    return vehicle_.MustEnd();
  });
}

// A shut-down ends the wait for an answer, and so does the end of a process.
bool Director::IsCutShort() {
  return vehicle_.ReceiveUntil(Vehicle::Clock::now() + milliseconds(1),
                               [this] { return vehicle_.MustEnd(); });
}

// Like the recording, a killed MetadataMgr has no clean end. What it was told last must be durable before.
void Director::EndReplay() {
  constexpr milliseconds kDurable{1500};
  if (drive_.endsInKill && !options_.attach) {
    (void)vehicle_.ReceiveUntil(Vehicle::Clock::now() + kDurable, [this] { return vehicle_.MustEnd(); });
    if (!vehicle_.MustEnd())
      report_.Event("killing MetadataMgr: " + actions_.at("kill")({MetadataMgrName()}).text);
  }
  if (!vehicle_.MustEnd()) vehicle_.MustEndNow(Vehicle::End::kPlayed);
}

}  // namespace bench
