#include "FileClock.h"

#include <algorithm>
#include <string>

#include "RecordTime.h"
#include "Sqlite.h"

namespace reader {

void FileClock::Read(Connection& connection) {
  anchors_.clear();
  at_ = 0;
  firstTrusted_ = 0;
  std::int64_t firstByGps = 0;
  Statement clock;
  const std::string sql =
      "SELECT seq, utc_ms - tick, clock_source='gps', utc_ms>=" + std::to_string(store::kFirstTrustedUtcMs) +
      " FROM main.clock ORDER BY seq";
  if (!Ok(clock.Prepare(connection.Handle(), sql))) return;
  // Numbers must rise: in a damaged file pages can lead to each other without end.
  while (clock.Step() == SqliteCode::kRow && (anchors_.empty() || clock.Integer(0) > anchors_.back().seq)) {
    const std::int64_t seq = clock.Integer(0);
    anchors_.push_back({seq, WithinTime(clock.Integer(1))});
    if (firstByGps == 0 && clock.Integer(2) != 0) firstByGps = seq;
    if (firstTrusted_ == 0 && clock.Integer(3) != 0) firstTrusted_ = seq;
  }
  if (firstByGps != 0) firstTrusted_ = firstByGps;
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
