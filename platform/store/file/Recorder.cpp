#include "Recorder.h"

#include <algorithm>
#include <string>

#include "log/LogLine.h"

namespace store {
namespace {

constexpr LogSource log{"DataStore"};

constexpr std::size_t kChunkBytes = std::size_t{256} << 10;  // of one transaction
constexpr std::size_t kProbeBytes = std::size_t{4} << 10;    // of one that will probably fail
constexpr std::uint64_t kLogBound = std::uint64_t{4} << 20;

}  // namespace

bool Recorder::Begin() {
  std::vector<std::uint32_t> numbers;
  std::uint32_t highest = 0;
  auto next = std::make_unique<RecordingFile>();
  if (names_.List(numbers, highest)) {
    const std::uint32_t number = std::max(highest, number_) + 1;
    if (next->Create(names_.PathOf(number), run_)) {
      number_ = number;
      if (file_ == nullptr) firstNumber_ = number;
      file_ = std::move(next);
      fullAt_ = maxFileBytes_;
      spoiled_ = inDoubt_ = logPinned_ = false;
      return true;
    }
  }
  if (file_ == nullptr) return false;  // the caller's business
  fullAt_ = file_->Bytes() + maxFileBytes_ / 16;
  if (spoiled_) {
    SayFailing("no new file can be begun");
  } else {
    log(kLogError, "No new file can be begun, recording goes on in ", file_->Path());
  }
  return false;
}

bool Recorder::Usable() {
  const bool there = file_->StillThere();
  if (!there && !spoiled_) log(kLogError, "Recording ", file_->Path(), " was removed or replaced");
  spoiled_ = spoiled_ || !there;
  return !spoiled_;
}

bool Recorder::Write(Batch& batch) {
  while (!batch.Empty()) {
    if (inDoubt_) {
      if (!SettleDoubt(batch)) return false;
      continue;
    }
    std::int64_t lastSeq = 0;
    const SqliteCode code = file_->Write(batch, failing_ ? kProbeBytes : kChunkBytes, lastSeq);
    if (!Ok(code)) return Fail(code);
    batch.RemoveUpTo(lastSeq);
    Work();
  }
  Work();
  WatchLog();
  return true;
}

// A commit that failed may have taken effect: what the file has is not written again.
bool Recorder::SettleDoubt(Batch& batch) {
  std::int64_t committed = 0;
  if (const SqliteCode code = file_->CommittedSeq(committed); !Ok(code)) return Fail(code);
  batch.RemoveUpTo(committed);
  inDoubt_ = false;
  return true;
}

bool Recorder::Fail(SqliteCode code) {
  SayFailing(TextOf(code));  // the connection's message is that of the rollback
  inDoubt_ = true;
  if (code == SqliteCode::kCorrupt || code == SqliteCode::kNotDatabase) spoiled_ = true;
  return false;
}

void Recorder::SayFailing(const char* reason) {
  if (!failing_) log(kLogError, "Recording to ", file_->Path(), " fails: ", reason);
  failing_ = true;
}

void Recorder::Work() {
  if (failing_) log(kLogError, "Recording works again, to ", file_->Path());
  failing_ = false;
}

void Recorder::WatchLog() {
  const bool pinned = file_->LogBytes() > kLogBound;
  if (pinned && !logPinned_) log(kLogError, "A reader makes the log of ", file_->Path(), " grow");
  logPinned_ = pinned;
}

}  // namespace store
