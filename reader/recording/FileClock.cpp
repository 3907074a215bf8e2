#include "FileClock.h"

#include <algorithm>
#include <string>

namespace {

constexpr std::int64_t kNearMs = 60'000;
constexpr std::int64_t kNoTick = 0xFFFFFFFF;
constexpr std::int64_t kSystemBornMs = 1'704'067'200'000;  // 2024-01-01: earlier dates are of unset clocks

}  // namespace

void FileClock::Read(Connection& connection) {
  anchors_.clear();
  at_ = 0;
  Statement clock;
  if (clock.Prepare(connection.Handle(), "SELECT seq, utc_ms - tick FROM clock ORDER BY seq") != SQLITE_OK) {
    return;
  }
  while (clock.Step() == SQLITE_ROW) anchors_.push_back({clock.Integer(0), WithinTime(clock.Integer(1))});
  firstTrusted_ = connection.Integer("SELECT min(seq) FROM clock WHERE clock_source='gps'", 0);
  if (firstTrusted_ != 0) return;
  firstTrusted_ =
      connection.Integer("SELECT min(seq) FROM clock WHERE utc_ms>=" + std::to_string(kSystemBornMs), 0);
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
  if (row.hasSenderTick && row.event != EventKind::kRestated && row.senderTick != 0 &&
      row.senderTick != kNoTick) {
    // The wrap taken out.
    const auto distance = static_cast<std::int32_t>(static_cast<std::uint32_t>(row.senderTick) -
                                                    static_cast<std::uint32_t>(row.tick));
    row.utcBySender = distance <= kNearMs && distance >= -kNearMs;
    if (row.utcBySender) shift = distance;
  }
  row.utcMs = offset == kNoUtc ? kNoUtc : row.tick + offset + shift;
}
