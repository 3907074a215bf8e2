#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

// The UTC of a record. Every record has its arrival tick, most have their sender's tick, and the rows of
// table clock relate ticks to UTC: at `tick` it was `utc_ms`. A reader finds a record's UTC like this:
//
//   1. The anchor is the last row of clock whose seq is not above the record's. Records before the first
//      trusted row take that row. The first trusted row is the first by GPS; in a file without one it is the
//      first whose utc_ms is kFirstTrustedUtcMs or later; in a file without either it is the first row.
//   2. UTC of the arrival = utc_ms + tick of the record - tick of the anchor.
//   3. Where SenderShiftMs has a value, UTC of the event = UTC of the arrival + that shift. A restated record
//      has the time of its restating: its sender's tick is ignored.
//
// View timeline (Schema.cpp) does the same in SQL.
namespace store {

// What a sender that knows no tick tells, and the store before its first tick.
inline constexpr std::uint32_t kNoTick = 0xFFFFFFFF;

// Clocks and receivers that tell an earlier date have not been set yet: there was no such recorder.
inline constexpr std::chrono::sys_days kFirstTrustedDay{std::chrono::year{2024} / 1 / 1};
inline constexpr std::int64_t kFirstTrustedUtcMs =
    std::chrono::milliseconds(kFirstTrustedDay.time_since_epoch()).count();

// A sender's tick that is farther from the arrival than this belongs to another time and is ignored.
inline constexpr std::int64_t kNearMs = 60'000;

// Milliseconds from the arrival tick to a 32-bit tick, less than 0 for earlier: the shorter way round.
constexpr std::int64_t TickDistanceMs(std::int64_t arrival, std::uint32_t tick) {
  return static_cast<std::int32_t>(tick - static_cast<std::uint32_t>(arrival));
}

constexpr bool IsNear(std::int64_t distanceMs) {
  return distanceMs >= -kNearMs && distanceMs <= kNearMs;
}

// Milliseconds from the arrival of a record to its event, by the sender's tick; nothing where that tick
// tells nothing.
constexpr std::optional<std::int64_t> SenderShiftMs(std::int64_t arrival, std::int64_t senderTick) {
  if (senderTick <= 0 || senderTick >= kNoTick) return std::nullopt;
  const std::int64_t distanceMs = TickDistanceMs(arrival, static_cast<std::uint32_t>(senderTick));
  return IsNear(distanceMs) ? std::optional(distanceMs) : std::nullopt;
}

}  // namespace store
