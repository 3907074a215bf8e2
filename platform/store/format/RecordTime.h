#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

// The UTC of a record. Every record has an arrival tick, and most have a sender tick. Each row of table clock
// is an anchor: at its `tick` the UTC was `utc_ms`. A reader computes a record's UTC like this:
//
//   1. The anchor is the last row of clock whose seq is not above the record's. Records before the first
//      trusted row use that row. The first trusted row is the first row by GPS; in a file without one, the
//      first row whose utc_ms is at least kFirstTrustedUtcMs; in a file without either, the first row.
//   2. UTC of the arrival = utc_ms + tick of the record - tick of the anchor.
//   3. If SenderShiftMs has a value, UTC of the event = UTC of the arrival + that shift. A restated record
//      has the time of its restating: its sender tick is ignored.
//
// View timeline (Schema.cpp) does the same in SQL.
namespace store {

// Sent by a sender that knows no tick; the store's own value before its first tick.
inline constexpr std::uint32_t kNoTick = 0xFFFFFFFF;

// A clock or receiver with an earlier date has not been set: this recorder did not exist then.
inline constexpr std::chrono::sys_days kFirstTrustedDay{std::chrono::year{2024} / 1 / 1};
inline constexpr std::int64_t kFirstTrustedUtcMs =
    std::chrono::milliseconds(kFirstTrustedDay.time_since_epoch()).count();

// Sender ticks farther than this from the arrival tick are ignored.
inline constexpr std::int64_t kNearMs = 60'000;

// Milliseconds from the arrival tick to a 32-bit tick, negative if earlier: the shorter way round the wrap.
constexpr std::int64_t TickDistanceMs(std::int64_t arrival, std::uint32_t tick) {
  return static_cast<std::int32_t>(tick - static_cast<std::uint32_t>(arrival));
}

constexpr bool IsNear(std::int64_t distanceMs) {
  return distanceMs >= -kNearMs && distanceMs <= kNearMs;
}

// Milliseconds from the arrival of a record to its event, by the sender tick. Empty if that tick is missing
// or not near.
constexpr std::optional<std::int64_t> SenderShiftMs(std::int64_t arrival, std::int64_t senderTick) {
  if (senderTick <= 0 || senderTick >= kNoTick) return std::nullopt;
  const std::int64_t distanceMs = TickDistanceMs(arrival, static_cast<std::uint32_t>(senderTick));
  return IsNear(distanceMs) ? std::optional(distanceMs) : std::nullopt;
}

}  // namespace store
