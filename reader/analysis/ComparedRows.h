#pragma once

#include <cstdint>
#include <string>

#include "RunReader.h"
#include "Selection.h"

namespace reader {

// One record of a comparison.
struct ComparedRow {
  std::int64_t rank = 0;  // place among the compared records of its run
  std::string table;
  std::string source;
  std::int64_t seq = 0;
  EventKind event = EventKind::kInitial;
  std::int64_t tick = 0;         // arrival tick
  bool ticked = false;           // the sender gave a tick
  std::uint32_t senderTick = 0;  // if it gave none: that of the last record with one
  std::int64_t utcMs = kNoUtc;
  std::string values;  // kind of event and fields: "event active 1"

  bool SameSource(const ComparedRow& other) const { return source == other.source && table == other.table; }
  bool SameContent(const ComparedRow& other) const { return SameSource(other) && values == other.values; }
};

// Which records and values a comparison looks at. Restated records never are: nothing happened then.
struct ComparedScope {
  const Selection* ignored = nullptr;  // null: none
  bool clock = false;                  // clock records and UTC, too
};

// Reads the compared records of one run.
class ComparedRows {
 public:
  ComparedRows(const Run& run, ComparedScope scope, Messages& messages)
      : reader_({run}, nullptr, false, messages), scope_(scope) {}

  bool Next(ComparedRow& compared);

 private:
  bool IsCompared(const Row& row) const;

  RunReader reader_;
  ComparedScope scope_;
  std::int64_t rank_ = 0;
  std::uint32_t lastSenderTick_ = 0;
};

}  // namespace reader
