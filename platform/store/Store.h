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

// Numbers records, keeps them in memory, and decides when they are written:
//   - at the first tick at which one is kCommitAfterMs old;
//   - a critical record at once; less than kCriticalGapMs after another one, at the first tick behind that
//   gap;
//   - when a quarter of the bound waits;
//   - at each TimerTick while no ticks are told.
// While writing fails, it is tried again at the same distances.
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
  // One record; nothing unless open.
  void Add(const Report& report, const store::RowView& row);

  void AddPreviousRun();
  void AddConfiguration(store::Event event);
  void AddRunEnd();
  // A GPS reading told this UTC at this tick.
  void AddGpsTime(std::uint32_t tick, std::int64_t utcMs);
  void AddFullState();

 private:
  void ReadArrival();
  void AddRecord(const Report& report, const store::RowView& row);
  void AddClock();
  void AddLogPinned();
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
  bool ticking_ = false;      // the last TimerTick told a tick
  bool arrivalRead_ = false;  // since the last TimerTick
  int turns_ = 0;             // calls of TimerTick since Open, as far as they matter
  store::ClockAnchors anchors_;
  store::PreviousRun previousRun_;

  std::int64_t seq_ = 0;
  std::int64_t fullStateSeq_ = 0;  // the end of the last full state
  std::int64_t nextAttempt_ = 0;   // arrival tick, while writing fails
  bool ending_ = false;            // no next file, which would not tell of the clean end
  bool criticalPending_ = false;
  bool criticalWritten_ = false;
  unsigned int criticalWrittenMs_ = 0;  // by the clock, not by arrival
  bool logPinned_ = false;              // as recorded
};
