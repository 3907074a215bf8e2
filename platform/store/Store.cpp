#include "Store.h"

#include <algorithm>
#include <csignal>

#include "StoreLog.h"
#include "SystemStoreClock.h"
#include "Tables.h"
#include "WhyNoFile.h"

using store::Row;

namespace {

constexpr int kStartUpTurns = 2;  // the TimerTick of the start-up, and the first of the loop

// A file size limit then acts like a full medium and does not end the process.
void IgnoreFileSizeSignal() {
  struct sigaction now {};
  if (sigaction(SIGXFSZ, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) (void)signal(SIGXFSZ, SIG_IGN);
}

}  // namespace

DataStoreNormal::Store::Store(const std::string& path, const StoreOptions& options)
    : OpenStore(path),
      options_(options),
      clock_(options.clock != nullptr ? *options.clock : store::SystemClock()),
      recorder_(path, options.maxFileBytes),
      batch_(options.maxPendingBytes) {}

bool DataStoreNormal::Store::Open() {
  if (recorder_.IsOpen()) return true;
  seq_ = 0;
  ending_ = false;
  turns_ = 0;
  fullState_ = store::FullState();
  IgnoreFileSizeSignal();
  recorder_.Start(options_.runId.value_or(store::NewRunId()));
  previousRun_ = store::LookAtPreviousRun(recorder_.Names());
  recorder_.StartSeals(options_.keyFile, previousRun_.seal);
  arrival_.Start(clock_.TickMs());
  if (!BeginFile()) {
    const std::string path = recorder_.Names().PathOf(1);
    // The reason comes first: a long path would push it out of the line.
    kStoreLog(kLogError, "No recording can be begun (", store::WhyNoFile(path), "), such as ", path);
    return false;
  }
  (void)Commit();
  return true;
}

void DataStoreNormal::Store::Close() {
  if (!recorder_.IsOpen()) return;
  ending_ = true;
  recorder_.EndRun();
  // Tries twice: the first commit may fail, or leave a record about the WAL.
  if (!Commit() || !batch_.Empty()) (void)Commit();
  if (!batch_.Empty())
    kStoreLog(kLogError, "Lost at the end: ", static_cast<long long>(batch_.Count()), " records");
  kStoreLog(kLogDetail, "The longest batch had ", static_cast<long long>(batch_.MostBytes()), " bytes");
  batch_.Clear();
  recorder_.Close();
}

void DataStoreNormal::Store::TimerTick(unsigned int tick) {
  ticking_ = tick != store::kNoTick;
  arrivalRead_ = false;
  if (turns_ < kStartUpTurns) ++turns_;
  const std::int64_t before = arrival_.Now();
  if (arrival_.Advance(tick)) anchors_.TicksMoved(arrival_.Now() - before);
  if (!recorder_.IsOpen()) return;
  const std::int64_t now = arrival_.Now();
  if (anchors_.CheckDue(now) && anchors_.SystemDue(now, SystemUtcMs())) AddClock();
  // Without ticks no record ever becomes old enough: commits at once.
  const bool timeless = tick == store::kNoTick && !batch_.Empty();
  if (timeless || CommitDue()) (void)Commit();
}

bool DataStoreNormal::Store::Settle(store::CurrentRun& run) {
  if (!recorder_.IsOpen() || !Commit()) return false;
  run = {recorder_.RunNumbers(), arrival_.Now()};
  return true;
}

void DataStoreNormal::Store::Add(const Report& report, const store::RowView& row) {
  if (!recorder_.IsOpen()) return;
  ReadArrival();
  AddRecord(report, row);
  if (report.critical) {
    CommitCritical();
  } else if (batch_.Bytes() >= options_.maxPendingBytes / 4 && !recorder_.Failing()) {
    (void)Commit();
  }
}

// TimerTick comes at the end of a turn, which can take a second. So the first report of a turn reads the
// clock itself. During start-up turns are long, and every report reads it.
void DataStoreNormal::Store::ReadArrival() {
  if (!ticking_ || (arrivalRead_ && turns_ == kStartUpTurns)) return;
  arrival_.Follow(clock_.TickMs());
  arrivalRead_ = true;
}

void DataStoreNormal::Store::AddRecord(const Report& report, const store::RowView& row) {
  store::RecordHeader header;
  header.seq = ++seq_;
  header.tick = arrival_.Now();
  header.senderTick = report.senderTick;
  header.event = report.event;
  header.critical = report.critical;
  fullState_.Keep(header, batch_.Add(header, row));
}

bool DataStoreNormal::Store::CommitDue() const {
  if (recorder_.Failing()) return arrival_.Now() >= nextAttempt_;
  if (criticalPending_ && CriticalGapOver()) return true;
  if (batch_.Empty()) return false;
  const std::int64_t age = arrival_.Now() - batch_.First().tick;
  return age >= kCommitAfterMs || age < 0;  // below 0: the first tick moved time back
}

void DataStoreNormal::Store::CommitCritical() {
  criticalPending_ = true;
  nextAttempt_ = std::min(nextAttempt_, arrival_.Now() + kCriticalGapMs);
  if (recorder_.Failing() ? arrival_.Now() >= nextAttempt_ : CriticalGapOver()) (void)Commit();
}

// Reads the clock itself: TimerTick comes once a turn, and a turn can take a second.
bool DataStoreNormal::Store::CriticalGapOver() const {
  const unsigned int now = clock_.TickMs();
  return !criticalWritten_ || now == store::kNoTick || now - criticalWrittenMs_ >= kCriticalGapMs;
}

bool DataStoreNormal::Store::Commit() {
  bool written = (recorder_.Usable() || BeginFile()) && WriteAll();
  if (written && !ending_ && recorder_.Full() && BeginFile()) written = WriteAll();
  if (!written) {
    nextAttempt_ = arrival_.Now() + (criticalPending_ ? kCriticalGapMs : kCommitAfterMs);
    return false;
  }
  if (criticalPending_) {
    criticalPending_ = false;
    criticalWritten_ = true;
    criticalWrittenMs_ = clock_.TickMs();
  }
  if (recorder_.WalPinned() != walPinned_) AddWalPinned();
  if (!ending_) KeepFullStateNear();
  return true;
}

bool DataStoreNormal::Store::WriteAll() {
  if (!recorder_.Write(batch_)) return false;
  if (!batch_.HasLosses()) return true;
  AddLosses();
  return recorder_.Write(batch_);
}

void DataStoreNormal::Store::Restate() {
  fullState_.Restate(batch_, seq_, arrival_.Now());
  fullStateSeq_ = seq_;
}

// The state at any tick can then be found without reading the whole run. At this interval full states add
// less than 3 % to a recording.
void DataStoreNormal::Store::KeepFullStateNear() {
  constexpr std::int64_t kRecords = 16'384;
  constexpr std::int64_t kRecordsASource = 64;
  const std::int64_t sources = fullState_.Count();
  if (seq_ - fullStateSeq_ < std::max(kRecords, kRecordsASource * sources)) return;
  AddRecord({}, Row<store::kFullStateTable>(seq_ + 1 + sources));
  Restate();
}

// Each file stands alone: it begins with a clock anchor and the full state.
bool DataStoreNormal::Store::BeginFile() {
  if (!recorder_.Begin()) return false;
  walPinned_ = false;
  AddClock();
  if (const auto abandoned = recorder_.TakeAbandoned(); !abandoned.file.empty()) {
    AddRecord({.critical = true}, Row<store::kAbandonedTable>(std::string_view(abandoned.file),
                                                              std::string_view(abandoned.harm)));
  }
  Restate();
  return true;
}

void DataStoreNormal::Store::AddRunEnd() {
  if (!recorder_.IsOpen()) return;
  AddRecord({.critical = true}, Row<store::kRunEndTable>());
  ending_ = true;
  recorder_.EndRun();
  (void)Commit();
}

void DataStoreNormal::Store::AddFullState() {
  if (!recorder_.IsOpen()) return;
  Restate();
  (void)Commit();
}
