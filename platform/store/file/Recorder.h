#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Batch.h"
#include "FileNames.h"
#include "RecordingDirectory.h"
#include "RecordingFile.h"
#include "seal/Sealer.h"

namespace store {

// Writes batches to the current recording and begins the next one. Logs when writing begins to fail and when
// it works again.
class Recorder {
 public:
  Recorder(const std::string& basePath, std::uint64_t maxFileBytes)
      : names_(basePath),
        directory_(names_.Directory()),
        maxFileBytes_(std::max(maxFileBytes, kMinFileBytes)),
        fullAt_(maxFileBytes_) {}

  // Call both before the first Begin of a run. Files begun from now on belong to this run.
  void Start(const RunId& run);
  // Seals the run with the key in this file, or without a key if there is none. `found` is the last seal of
  // the previous run.
  void StartSeals(const std::string& keyFile, const std::optional<seal::Found>& found);
  // From now on any commit can be the last of the run.
  void EndRun() { sealer_->EndRun(); }

  // Creates the next file and switches to it. On failure the current file stays in use. Recreates the
  // directory if it was removed since Start.
  bool Begin();

  // Whether the current file is sound and was not replaced. Only this call checks it.
  bool Usable();

  // Writes the whole batch and empties it. On failure the batch keeps the unwritten records for another try.
  // No record is written twice.
  bool Write(Batch& batch);

  // Whether the current file has reached its full size. After a failed Begin, true only once it has grown by
  // another 1/16 of that size.
  bool Full() const { return file_ != nullptr && file_->Bytes() >= fullAt_; }

  void Close() {
    file_.reset();
    sealer_.reset();
  }
  bool IsOpen() const { return file_ != nullptr; }
  bool Failing() const { return failing_; }
  bool WalPinned() const { return walPinned_; }
  RecordingFile& File() { return *file_; }
  const FileNames& Names() const { return names_; }
  const std::vector<std::uint32_t>& RunNumbers() const { return runNumbers_; }  // since Start

  // The file that was abandoned because it was harmed; empty if there is none. Returned only once.
  struct Abandoned {
    std::string file;
    std::string harm;
  };
  Abandoned TakeAbandoned() { return std::exchange(abandoned_, {}); }

 private:
  static constexpr std::uint64_t kMinFileBytes = std::uint64_t{80} << 10;  // an empty recording takes some 60

  std::unique_ptr<RecordingFile> CreateNext(std::uint32_t& number);
  bool SettleDoubt(Batch& batch);
  bool Fail(SqliteCode code);
  void Abandon(const char* harm);
  void SayFailing(const char* reason);
  void Work();
  void Sealed();
  void WatchWal();

  FileNames names_;
  RecordingDirectory directory_;
  RunId run_{};
  std::uint64_t maxFileBytes_;
  std::uint64_t fullAt_;
  std::unique_ptr<RecordingFile> file_;
  std::optional<seal::Sealer> sealer_;
  std::vector<std::uint32_t> runNumbers_;
  std::uint32_t number_ = 0;
  Abandoned abandoned_;
  bool spoiled_ = false;    // the file is damaged: no more writes
  bool failing_ = false;    // the last write failed
  bool inDoubt_ = false;    // the failed commit may have taken effect
  bool walPinned_ = false;  // logged that the WAL grows
  bool keyStuck_ = false;   // logged that the key file fails
};

}  // namespace store
