#include "Position.h"

#include <algorithm>

#include "RunReader.h"

namespace reader {
namespace {

// Seconds since 1970, for 2017 to 2100. As ticks, these are valid for a recorder that runs for weeks.
constexpr std::int64_t kFirstEpochSecond = 1'500'000'000;
constexpr std::int64_t kLastEpochSecond = 4'100'000'000;

bool LooksLikeEpoch(std::int64_t tick, const std::vector<Run>& runs) {
  constexpr std::int64_t kDayMs = 86'400'000;
  if (tick < kFirstEpochSecond || tick > kLastEpochSecond) return false;
  return std::none_of(runs.begin(), runs.end(), [tick](const Run& run) {
    return tick >= run.firstTick - kDayMs && tick <= run.lastTick + kDayMs;
  });
}

int Sign(std::int64_t left, std::int64_t right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

}  // namespace

int Position::Compare(const Row& row) const {
  if (run != 0 && row.run != run) return Sign(row.run, run);
  switch (by) {
    case By::kTick:
      return Sign(row.tick, value);
    case By::kUtc:
      return Sign(row.utcMs, value);
    case By::kSeq:
      return Sign(row.seq, value);
  }
  return 0;
}

std::int64_t Position::AgeMs(const Row& row) const {
  switch (by) {
    case By::kTick:
      return value - row.tick;
    case By::kUtc:
      return value - std::max(row.utcMs, -2 * kFarthestMs);  // a file without a clock has kNoUtc
    case By::kSeq:
      return tick - row.tick;
  }
  return 0;
}

bool Position::IsAfter(const Position& other) const {
  if (run != 0 && other.run != 0 && run != other.run) return run > other.run;
  if (by == By::kUtc || other.by == By::kUtc)
    return utcMs != kNoUtc && other.utcMs != kNoUtc && utcMs > other.utcMs;
  if (by == By::kSeq && other.by == By::kSeq) return value > other.value;
  return tick > other.tick;
}

std::optional<Position> Resolve(const Instant& instant, const std::vector<Run>& runs, Messages& messages) {
  if (instant.kind == Instant::Kind::kTick) {
    if (!LooksLikeEpoch(instant.value, runs))
      return Position{Position::By::kTick, 0, instant.value, instant.value};
    messages.Problem(EpochHint(instant.said, instant.value * 1000));
    return std::nullopt;
  }
  if (instant.kind == Instant::Kind::kUtc)
    return Position{Position::By::kUtc, 0, instant.value, 0, instant.value};
  Selection selection;
  std::string ignored;
  (void)selection.Read(instant.source, ignored);
  RunReader reader(runs, &selection, false, messages);
  Row row;
  int count = 0;
  while (reader.Next(row)) {
    if (row.event != EventKind::kEvent) continue;
    if (instant.active != Instant::kAnyActive && row.Number("active") != instant.active) continue;
    if (++count < instant.count) continue;
    const std::int64_t utcMs = row.utcMs == kNoUtc ? kNoUtc : row.utcMs + instant.distanceMs;
    if (instant.distanceMs == 0) return Position{Position::By::kSeq, row.run, row.seq, row.tick, utcMs};
    const std::int64_t tick = row.tick + instant.distanceMs;
    return Position{Position::By::kTick, row.run, tick, tick, utcMs};
  }
  messages.Problem("no " + instant.said + " is recorded: there are " + std::to_string(count));
  return std::nullopt;
}

}  // namespace reader
