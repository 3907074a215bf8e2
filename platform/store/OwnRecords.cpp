#include "Store.h"
#include "Tables.h"

// The records that the store makes itself: clock anchors, losses, the previous run, its configuration.

using store::Event;
using store::Row;

// Wall clock at the arrival tick, which lies slightly in the past.
std::int64_t DataStoreNormal::Store::SystemUtcMs() const {
  unsigned int tick = 0;
  std::int64_t utcMs = 0;
  for (int attempt = 0; attempt < 3; ++attempt) {  // tries again if another process ran in between
    tick = clock_.TickMs();
    utcMs = clock_.UtcMs();
    if (clock_.TickMs() - tick <= 1) break;
  }
  const std::int64_t ago = arrival_.DistanceMs(tick);
  const bool sameClock = tick != store::kNoTick && store::IsNear(ago);
  return sameClock ? utcMs - ago : utcMs;
}

void DataStoreNormal::Store::AddClock() {
  const std::int64_t now = arrival_.Now();
  const std::int64_t systemUtcMs = SystemUtcMs();
  anchors_.RecordedSystem(now, systemUtcMs);
  const bool gps = anchors_.GpsKnown();
  AddRecord({}, Row<store::kClockTable>(gps ? anchors_.GpsUtcAt(now) : systemUtcMs, gps ? "gps" : "system",
                                        systemUtcMs));
}

// Ignores a reading whose tick is more than a minute from its arrival.
void DataStoreNormal::Store::AddGpsTime(std::uint32_t tick, std::int64_t utcMs) {
  if (!recorder_.IsOpen() || tick == 0 || tick == store::kNoTick) return;
  const std::int64_t later = arrival_.DistanceMs(tick);
  const std::int64_t now = arrival_.Now();
  if (!store::IsNear(later) || !anchors_.GpsDue(now, utcMs - later)) return;
  anchors_.SetGps(now, utcMs - later);
  AddClock();
}

void DataStoreNormal::Store::AddWalPinned() {
  walPinned_ = recorder_.WalPinned();
  AddRecord({}, Row<store::kWalPinnedTable>(walPinned_, recorder_.File().WalBytes()));
}

void DataStoreNormal::Store::AddLosses() {
  const store::Losses losses = batch_.TakeLosses();
  for (const store::Table& table : store::kTables) {
    const store::Loss& loss = losses[table.id];
    if (loss.count == 0) continue;
    AddRecord({.critical = true}, Row<store::kLossTable>(table.name, loss.fromTick, loss.toTick, loss.count));
  }
}

void DataStoreNormal::Store::AddPreviousRun() {
  const store::PreviousRun& run = previousRun_;
  Add({Event::kInitial},
      Row<store::kPreviousRunTable>(run.ended, run.file, run.lastSeq, run.lastTick, run.lastUtcMs));
}

void DataStoreNormal::Store::AddSetting(Event event, std::string_view name, const std::string& value) {
  Add({event}, Row<store::kConfigurationTable>(name, value));
}

void DataStoreNormal::Store::AddConfiguration(Event event) {
  if (!recorder_.IsOpen()) return;
  AddSetting(event, "software", MM_VERSION);
  AddSetting(event, "sqlite", sqlite3_libversion());
  AddSetting(event, "max_file_bytes", std::to_string(options_.maxFileBytes));
  AddSetting(event, "max_pending_bytes", std::to_string(options_.maxPendingBytes));
  AddSetting(event, "commit_after_ms", std::to_string(kCommitAfterMs));
  AddSetting(event, "critical_gap_ms", std::to_string(kCriticalGapMs));
  for (const char* name : {"user_version", "journal_mode", "synchronous", "page_size", "cache_size",
                           "wal_autocheckpoint", "journal_size_limit"}) {
    std::string value;
    if (Ok(recorder_.File().Connection().Query(std::string("PRAGMA ") + name, value))) {
      AddSetting(event, name, value);
    }
  }
}
