#pragma once

#include <string>

#include "ArrivalTick.h"
#include "Batch.h"
#include "ClockAnchors.h"
#include "FullState.h"
#include "OpenStores.h"
#include "PreviousRun.h"
#include "Recorder.h"
#include "store/DataStoreNormal.h"
#include "store/StoreOptions.h"

// Numbers records, keeps them in memory, and commits them:
//   - at the first TimerTick when a record is kCommitAfterMs old;
//   - at once for a critical record; within kCriticalGapMs of another, at the first TimerTick after the gap;
//   - when a quarter of the memory bound is used;
//   - at each TimerTick without a tick.
// While writing fails, it retries at the same intervals.
class DataStoreNormal::Store : public store::OpenStore {
 public:
  static constexpr std::int64_t kCommitAfterMs = 500;
  static constexpr std::int64_t kCriticalGapMs = 50;

  Store(const std::string& path, const StoreOptions& options);

  bool Open();
  void Close();
  void TimerTick(unsigned int tick);
  bool Settle(store::CurrentRun& run) override;
  unsigned int LastTick() const { return arrival_.Last(); }

  // Why and when a record was reported.
  struct Report {
    store::Event event = store::Event::kChange;
    std::int64_t senderTick = store::kNoSenderTick;
    bool critical = false;
  };
  // Adds one record. Does nothing unless open.
  void Add(const Report& report, const store::RowView& row);

  void AddPreviousRun();
  void AddConfiguration(store::Event event);
  void AddRunEnd();
  // Takes the UTC of a GPS reading and its sender tick.
  void AddGpsTime(std::uint32_t tick, std::int64_t utcMs);
  void AddFullState();

 private:
  void ReadArrival();
  void AddRecord(const Report& report, const store::RowView& row);
  void AddClock();
  void AddWalPinned();
  std::int64_t SystemUtcMs() const;
  void AddLosses();
  void AddSetting(store::Event event, std::string_view name, const std::string& value);

  void Restate();
  void KeepFullStateNear();
  bool BeginFile();
  bool Commit();
  bool WriteAll();
  void CommitCritical();
  bool CommitDue() const;
  bool CriticalGapOver() const;

  StoreOptions options_;
  const StoreClock& clock_;
  store::Recorder recorder_;
  store::Batch batch_;
  store::FullState fullState_;
  store::ArrivalTick arrival_;
  bool ticking_ = false;      // the last TimerTick had a tick
  bool arrivalRead_ = false;  // clock read since the last TimerTick
  int turns_ = 0;             // TimerTick calls since Open, counted up to kStartUpTurns
  store::ClockAnchors anchors_;
  store::PreviousRun previousRun_;

  std::int64_t seq_ = 0;
  std::int64_t fullStateSeq_ = 0;  // last record of the last full state
  std::int64_t nextAttempt_ = 0;   // arrival tick of the next try while writing fails
  bool ending_ = false;            // begins no further file: it would lack the clean end
  bool criticalPending_ = false;
  bool criticalWritten_ = false;
  unsigned int criticalWrittenMs_ = 0;  // clock tick, not arrival tick
  bool walPinned_ = false;              // last recorded value
};
