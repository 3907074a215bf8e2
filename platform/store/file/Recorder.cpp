#include "Recorder.h"

#include <cerrno>

#include "PreviousRun.h"
#include "SealKey.h"
#include "StoreLog.h"

namespace store {
namespace {

constexpr std::size_t kChunkBytes = std::size_t{256} << 10;  // per transaction
constexpr std::size_t kProbeBytes = std::size_t{4} << 10;    // per transaction while writing fails
constexpr int kAttempts = 3;                                 // if names are taken meanwhile
constexpr std::uint64_t kWalBoundBytes = std::uint64_t{4} << 20;

}  // namespace

void Recorder::Start(const RunId& run) {
  run_ = run;
  directory_.Secure();
  runNumbers_.clear();
  abandoned_ = {};
}

void Recorder::StartSeals(const std::string& keyFile, const std::optional<seal::Found>& found) {
  sealer_.emplace();
  keyStuck_ = false;
  UseSealKey(*sealer_, keyFile);
  sealer_->StartRun(run_, found, {});
}

// Skips planted names: they cannot stop or steer the numbering.
std::unique_ptr<RecordingFile> Recorder::CreateNext(std::uint32_t& number) {
  FileNames::Numbers numbers;
  int error = names_.List(numbers);
  if (error == ENOENT && file_ != nullptr && directory_.MakeAgain()) error = names_.List(numbers);
  if (error != 0) return nullptr;
  number = number_ != 0 ? number_ : NewestRecording(names_, numbers);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    number = numbers.FreeAfter(number);
    auto next = std::make_unique<RecordingFile>();
    error = next->Create(names_.PathOf(number), run_);
    if (error == 0) return next;
    if (error != EEXIST) break;
  }
  return nullptr;
}

bool Recorder::Begin() {
  std::uint32_t number = 0;
  if (auto next = CreateNext(number); next != nullptr) {
    if (inDoubt_ && file_->InDoubt()) sealer_->Skip();
    sealer_->BeginFile(number);
    number_ = number;
    runNumbers_.push_back(number);
    file_ = std::move(next);
    fullAt_ = maxFileBytes_;
    spoiled_ = inDoubt_ = walPinned_ = false;
    return true;
  }
  if (file_ == nullptr) return false;  // the caller logs it
  fullAt_ = file_->Bytes() + maxFileBytes_ / 16;
  if (spoiled_) {
    SayFailing("no new file can be begun");
  } else {
    kStoreLog(kLogError, "No new file can be begun, recording goes on in ", file_->Path());
  }
  return false;
}

bool Recorder::Usable() {
  if (spoiled_) return false;
  const char* harm = file_->Harm();
  if (harm == nullptr) return true;
  kStoreLog(kLogError, "Recording ", file_->Path(), " was ", harm);
  Abandon(harm);
  return false;
}

void Recorder::Abandon(const char* harm) {
  spoiled_ = true;
  abandoned_ = {NameOf(file_->Path()), harm};
}

bool Recorder::Write(Batch& batch) {
  while (!batch.Empty()) {
    if (inDoubt_) {
      if (!SettleDoubt(batch)) return false;
      continue;
    }
    std::int64_t lastSeq = 0;
    const SqliteCode code = file_->Write(batch, failing_ ? kProbeBytes : kChunkBytes, *sealer_, lastSeq);
    if (!Ok(code)) return Fail(code);
    batch.RemoveUpTo(lastSeq);
    sealer_->Committed();
    Sealed();
    Work();
  }
  Work();
  WatchWal();
  return true;
}

// A failed commit may have taken effect. Records that the file already has are not written again.
bool Recorder::SettleDoubt(Batch& batch) {
  std::int64_t committed = 0;
  seal::Place place;
  if (const SqliteCode code = file_->LastCommit(place, committed); !Ok(code)) return Fail(code);
  if (!sealer_->Settle(place)) return Fail(SqliteCode::kCorrupt);
  Sealed();
  batch.RemoveUpTo(committed);
  inDoubt_ = false;
  return true;
}

bool Recorder::Fail(SqliteCode code) {
  SayFailing(TextOf(code));  // the connection's own message is about the rollback
  inDoubt_ = true;
  if (!spoiled_ && (code == SqliteCode::kCorrupt || code == SqliteCode::kNotDatabase)) Abandon(TextOf(code));
  return false;
}

void Recorder::SayFailing(const char* reason) {
  if (!failing_) kStoreLog(kLogError, "Recording to ", file_->Path(), " fails: ", reason);
  failing_ = true;
}

void Recorder::Work() {
  if (failing_) kStoreLog(kLogError, "Recording works again, to ", file_->Path());
  failing_ = false;
}

void Recorder::Sealed() {
  if (sealer_->KeyStuck() != keyStuck_)
    kStoreLog(kLogError,
              keyStuck_ ? "The seals' key file works again" : "The seals' key file cannot be written");
  keyStuck_ = sealer_->KeyStuck();
}

void Recorder::WatchWal() {
  const bool pinned = file_->WalBytes() > kWalBoundBytes;
  if (pinned && !walPinned_) kStoreLog(kLogError, "A reader makes the WAL of ", file_->Path(), " grow");
  walPinned_ = pinned;
}

}  // namespace store
