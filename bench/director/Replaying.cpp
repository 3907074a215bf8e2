#include "Director.h"
#include "Processes.h"
#include "system/Systick.h"

// How a replay is played.

namespace bench {

using std::chrono::milliseconds;

namespace {

constexpr std::chrono::seconds kProgressInterval{10};

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
  Vehicle::Clock::time_point next = Vehicle::Clock::now() + kProgressInterval;
  const auto mustEnd = [this] { return vehicle_.MustEnd(); };
  bool failed = false;
  for (DriveLine line; drive_.next(line);) {
    const bool look = failed || linesPlayed_ % kLinesWithoutALook == kLinesWithoutALook - 1;
    const auto due = report_.WhenDue(line.at);
    if (vehicle_.ReceiveUntil(look ? std::max(due, Vehicle::Clock::now() + milliseconds(1)) : due, mustEnd))
      return;
    report_.DriveIsAt(line.at);
    ++linesPlayed_;
    failed = !Execute(line.command.words, {}).ok;
    if (Vehicle::Clock::now() < next) continue;
    report_.Event(std::to_string(linesPlayed_) + " lines");
    next += kProgressInterval;
  }
  EndReplay();
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
  vehicle_.MustEndNow(Vehicle::End::kAskedFor);
}

}  // namespace bench
