#include "FileClock.h"

#include <algorithm>
#include <string>

#include "RecordTime.h"
#include "Sqlite.h"

namespace reader {

void FileClock::Read(Connection& connection) {
  anchors_.clear();
  at_ = 0;
  Statement clock;
  if (clock.Prepare(connection.Handle(), "SELECT seq, utc_ms - tick FROM main.clock ORDER BY seq") !=
      SQLITE_OK) {
    return;
  }
  while (clock.Step() == SQLITE_ROW) anchors_.push_back({clock.Integer(0), WithinTime(clock.Integer(1))});
  firstTrusted_ = connection.Integer("SELECT min(seq) FROM main.clock WHERE clock_source='gps'", 0);
  if (firstTrusted_ != 0) return;
  firstTrusted_ = connection.Integer(
      "SELECT min(seq) FROM main.clock WHERE utc_ms>=" + std::to_string(store::kFirstTrustedUtcMs), 0);
}

std::int64_t FileClock::OffsetAt(std::int64_t seq) {
  if (anchors_.empty()) return kNoUtc;
  seq = std::max(seq, firstTrusted_);
  if (anchors_[at_].seq > seq) at_ = 0;
  while (at_ + 1 < anchors_.size() && anchors_[at_ + 1].seq <= seq) ++at_;
  return anchors_[at_].offsetMs;
}

void FileClock::Tell(Row& row) {
  const std::int64_t offset = OffsetAt(row.seq);
  row.utcBySender = false;
  std::int64_t shift = 0;
  if (row.hasSenderTick && row.event != EventKind::kRestated) {
    const auto told = store::SenderShiftMs(row.tick, row.senderTick);
    row.utcBySender = told.has_value();
    shift = told.value_or(0);
  }
  row.utcMs = offset == kNoUtc ? kNoUtc : row.tick + offset + shift;
}

}  // namespace reader
