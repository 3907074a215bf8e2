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
  std::string_view name;  // as FieldName gives it
  bool isText = false;
  std::int64_t number = 0;
  std::string_view text;
};

enum class EventKind : unsigned char { kInitial = 0, kEvent = 1, kRestated = 2 };

const char* EventName(EventKind event);

// Limits times from damaged files, so that sums and differences cannot overflow.
constexpr std::int64_t kFarthestMs = std::int64_t{1} << 60;
constexpr std::int64_t WithinTime(std::int64_t ms) {
  return std::clamp(ms, -kFarthestMs, kFarthestMs);
}
// The same limit for numbers of records.
constexpr std::int64_t WithinCount(std::int64_t records) {
  return WithinTime(records);
}

// One record. Its views are valid until the next record is read.
struct Row {
  int run = 0;
  std::int64_t seq = 0;
  std::int64_t tick = 0;  // arrival tick
  bool hasSenderTick = false;
  std::int64_t senderTick = 0;
  EventKind event = EventKind::kInitial;
  std::int64_t utcMs = kNoUtc;  // of the sender tick if utcBySender, else of the arrival
  bool utcBySender = false;
  std::string_view table;
  const store::Table* known = nullptr;  // null for an unknown table
  std::string_view source;              // "brakes", "camera 2"
  std::string_view text;                // for people; empty unless requested
  std::span<const Field> fields;

  // Null if the record has no such field, as in files of another schema.
  const Field* Find(std::string_view name) const;
  std::int64_t Number(std::string_view name, std::int64_t otherwise = 0) const;
  std::string_view Text(std::string_view name) const;
};

}  // namespace reader
