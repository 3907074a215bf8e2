#include "Store.h"

#include <algorithm>

#include "SystemStoreClock.h"
#include "Tables.h"
#include "log/LogLine.h"

using store::Event;
using store::kNoSenderTick;
using store::TableId;
using store::Value;

namespace {

constexpr LogSource log{"DataStore"};

}  // namespace

DataStoreNormal::Store::Store(const std::string& path, const StoreOptions& options)
    : options_(options),
      clock_(options.clock != nullptr ? *options.clock : store::SystemClock()),
      recorder_(path, options.maxFileBytes),
      batch_(options.maxPendingBytes) {}

bool DataStoreNormal::Store::Open() {
  if (recorder_.IsOpen()) return true;
  seq_ = 0;
  fullState_ = store::FullState();
  previousRun_ = store::LookAtPreviousRun(recorder_.Names());
  arrival_.Start(clock_.TickMs());
  if (!BeginFile()) return false;
  (void)Commit();
  return true;
}

void DataStoreNormal::Store::Close() {
  if (!recorder_.IsOpen()) return;
  (void)Commit();
  if (!batch_.Empty())
    log(kLogError, "Lost at the end: ", static_cast<long long>(batch_.Count()), " records");
  batch_.Clear();
  recorder_.Close();
}

void DataStoreNormal::Store::TimerTick(unsigned int tick) {
  arrival_.Advance(tick);
  if (!recorder_.IsOpen()) return;
  if (anchors_.CheckDue(arrival_.Now()) && anchors_.Check(arrival_.Now(), clock_.UtcMs())) AddClock();
  if (CommitDue()) (void)Commit();
}

void DataStoreNormal::Store::Add(TableId table, Event event, std::int64_t senderTick,
                                 std::initializer_list<Value> values, bool critical) {
  if (!recorder_.IsOpen()) return;
  AddRecord(table, event, senderTick, values, critical);
  if (critical) {
    CommitCritical();
  } else if (batch_.Bytes() >= options_.maxPendingBytes / 4 && !recorder_.Failing()) {
    (void)Commit();
  }
}

void DataStoreNormal::Store::AddRecord(TableId table, Event event, std::int64_t senderTick,
                                       std::initializer_list<Value> values, bool critical) {
  store::RecordHeader header;
  header.seq = ++seq_;
  header.tick = arrival_.Now();
  header.senderTick = senderTick;
  header.table = table;
  header.event = event;
  header.critical = critical;
  fullState_.Keep(batch_.Add(header, values));
}

bool DataStoreNormal::Store::CommitDue() const {
  if (recorder_.Failing()) return arrival_.Now() >= nextAttempt_;
  if (criticalPending_ && CriticalGapOver()) return true;
  if (batch_.Empty()) return false;
  const std::int64_t age = arrival_.Now() - batch_.First().tick;
  return age >= kCommitAfterMs || age < 0;  // below 0: the first tick moved the beginning of time
}

void DataStoreNormal::Store::CommitCritical() {
  criticalPending_ = true;
  nextAttempt_ = std::min(nextAttempt_, arrival_.Now() + kCriticalGapMs);
  if (recorder_.Failing() ? arrival_.Now() >= nextAttempt_ : CriticalGapOver()) (void)Commit();
}

// Ticks are told once in a turn of the loop, which can take a second: too coarse for this.
bool DataStoreNormal::Store::CriticalGapOver() const {
  const unsigned int now = clock_.TickMs();
  return !criticalWritten_ || now == store::ArrivalTick::kNone || now - criticalWrittenMs_ >= kCriticalGapMs;
}

bool DataStoreNormal::Store::Commit() {
  bool written = (recorder_.Usable() || BeginFile()) && WriteAll();
  if (written && recorder_.Full() && BeginFile()) written = WriteAll();
  if (!written) {
    nextAttempt_ = arrival_.Now() + (criticalPending_ ? kCriticalGapMs : kCommitAfterMs);
    return false;
  }
  if (criticalPending_) {
    criticalPending_ = false;
    criticalWritten_ = true;
    criticalWrittenMs_ = clock_.TickMs();
  }
  return true;
}

bool DataStoreNormal::Store::WriteAll() {
  if (!recorder_.Write(batch_)) return false;
  if (!batch_.HasLosses()) return true;
  AddLosses();
  return recorder_.Write(batch_);
}

// Each file can be understood without the others.
bool DataStoreNormal::Store::BeginFile() {
  if (!recorder_.Begin()) return false;
  AddClock();
  fullState_.Restate(batch_, seq_, arrival_.Now());
  return true;
}

void DataStoreNormal::Store::AddClock() {
  const std::int64_t utcMs = clock_.UtcMs();
  anchors_.Recorded(arrival_.Now(), utcMs);
  AddRecord(store::kClockTable, Event::kChange, kNoSenderTick, {utcMs, std::string_view("system")}, false);
}

void DataStoreNormal::Store::AddLosses() {
  const store::Losses losses = batch_.TakeLosses();
  for (const store::Table& table : store::kTables) {
    const store::Loss& loss = losses[table.id];
    if (loss.count == 0) continue;
    AddRecord(store::kLossTable, Event::kChange, kNoSenderTick,
              {std::string_view(table.name), loss.fromTick, loss.toTick, loss.count}, true);
  }
}

void DataStoreNormal::Store::AddPreviousRun() {
  Add(store::kPreviousRunTable, Event::kInitial, kNoSenderTick,
      {std::string_view(previousRun_.ended), std::string_view(previousRun_.file), previousRun_.lastSeq,
       previousRun_.lastTick, previousRun_.lastUtcMs});
}

void DataStoreNormal::Store::AddRunEnd() {
  if (!recorder_.IsOpen()) return;
  AddRecord(store::kRunEndTable, Event::kChange, kNoSenderTick, {}, true);
  (void)Commit();
}

void DataStoreNormal::Store::AddFullState() {
  if (!recorder_.IsOpen()) return;
  fullState_.Restate(batch_, seq_, arrival_.Now());
  (void)Commit();
}

void DataStoreNormal::Store::AddSetting(Event event, std::string_view name, const std::string& value) {
  Add(store::kConfigurationTable, event, kNoSenderTick, {name, std::string_view(value)});
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
    if (recorder_.File().Connection().Query(std::string("PRAGMA ") + name, value) == SQLITE_OK) {
      AddSetting(event, name, value);
    }
  }
}
