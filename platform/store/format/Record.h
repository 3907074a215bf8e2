#pragma once

#include <cstdint>

namespace store {

enum TableId : unsigned char;  // Tables.h

// Why a record was made. Recordings hold these numbers.
enum class Event : unsigned char {
  kInitial = 0,   // the value a source had when first asked
  kChange = 1,    // it happened
  kRestated = 2,  // a last value, repeated in a full state
};
constexpr Event EventOf(bool report) {
  return report ? Event::kChange : Event::kInitial;
}

constexpr std::int64_t kNoSenderTick = -1;

struct RecordHeader {
  std::int64_t seq = 0;
  std::int64_t tick = 0;  // arrival tick, milliseconds
  std::int64_t senderTick = kNoSenderTick;
  std::uint32_t cellBytes = 0;
  TableId table{};
  Event event = Event::kChange;
  bool critical = false;  // durable at once, dropped last
};

}  // namespace store
