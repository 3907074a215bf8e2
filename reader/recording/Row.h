#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "Table.h"
#include "Utc.h"

namespace reader {

// One value of a record.
struct Field {
  std::string_view name;  // the column's; where that is one of every row, with the table before it
  bool isText = false;
  std::int64_t number = 0;
  std::string_view text;
};

enum class EventKind : unsigned char { kInitial = 0, kEvent = 1, kRestated = 2 };

const char* EventName(EventKind event);

// Whatever a damaged file says, times in milliseconds can be added and subtracted.
constexpr std::int64_t kFarthestMs = std::int64_t{1} << 60;
constexpr std::int64_t WithinTime(std::int64_t ms) {
  return std::clamp(ms, -kFarthestMs, kFarthestMs);
}
// And so can numbers of records.
constexpr std::int64_t WithinCount(std::int64_t records) {
  return WithinTime(records);
}

// One record as it is read. Everything that it refers to is valid until the next one is read.
struct Row {
  int run = 0;
  std::int64_t seq = 0;
  std::int64_t tick = 0;  // of the arrival
  bool hasSenderTick = false;
  std::int64_t senderTick = 0;
  EventKind event = EventKind::kInitial;
  std::int64_t utcMs = kNoUtc;  // of the event where the sender told it, else of the arrival
  bool utcBySender = false;
  std::string_view table;
  const store::Table* known = nullptr;  // what the format says of it; null where it does not know it
  std::string_view source;              // "brakes", "camera 2"
  std::string_view text;                // for people; only where it was asked for
  std::span<const Field> fields;

  // Null where this record has no such field, as in files of another schema.
  const Field* Find(std::string_view name) const;
  std::int64_t Number(std::string_view name, std::int64_t otherwise = 0) const;
  std::string_view Text(std::string_view name) const;
};

}  // namespace reader
