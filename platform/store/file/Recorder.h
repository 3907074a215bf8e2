#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Batch.h"
#include "FileNames.h"
#include "RecordingDirectory.h"
#include "RecordingFile.h"

namespace store {

// Writes batches into the current file of a series, and begins the next one. Logs when writing
// begins to fail and when it works again.
class Recorder {
 public:
  Recorder(const std::string& basePath, std::uint64_t maxFileBytes)
      : names_(basePath),
        directory_(names_.Directory()),
        maxFileBytes_(std::max(maxFileBytes, kMinFileBytes)),
        fullAt_(maxFileBytes_) {}

  // Before the first Begin of a run: the files begun from now on are its.
  void Start(const RunId& run);

  // Creates the next file and goes on with it; on failure things stay as they were. A directory that was
  // removed since Start is made again.
  bool Begin();

  // Whether the current file is still the one begun, and sound; not looked at between two calls.
  bool Usable();

  // Writes the whole batch and empties it. On failure what is left in it is to be written again;
  // nothing is written twice.
  bool Write(Batch& batch);

  // Whether the current file has its full size. After a Begin that failed not before it has grown
  // further.
  bool Full() const { return file_ != nullptr && file_->Bytes() >= fullAt_; }

  void Close() { file_.reset(); }
  bool IsOpen() const { return file_ != nullptr; }
  bool Failing() const { return failing_; }
  bool LogPinned() const { return logPinned_; }
  RecordingFile& File() { return *file_; }
  const FileNames& Names() const { return names_; }
  const std::vector<std::uint32_t>& RunNumbers() const { return runNumbers_; }  // since Start

  // What others have done to the last file, so that it was left; empty when nothing. Tells it once.
  struct Abandoned {
    std::string file;
    std::string harm;
  };
  Abandoned TakeAbandoned() { return std::exchange(abandoned_, {}); }

 private:
  static constexpr std::uint64_t kMinFileBytes = std::uint64_t{80} << 10;  // its beginning takes some 60

  std::unique_ptr<RecordingFile> CreateNext(std::uint32_t& number);
  bool SettleDoubt(Batch& batch);
  bool Fail(SqliteCode code);
  void Abandon(const char* harm);
  void SayFailing(const char* reason);
  void Work();
  void WatchLog();

  FileNames names_;
  RecordingDirectory directory_;
  RunId run_{};
  std::uint64_t maxFileBytes_;
  std::uint64_t fullAt_;
  std::unique_ptr<RecordingFile> file_;
  std::vector<std::uint32_t> runNumbers_;
  std::uint32_t number_ = 0;
  Abandoned abandoned_;
  bool spoiled_ = false;    // damaged: not to be written any more
  bool failing_ = false;    // the last attempt failed
  bool inDoubt_ = false;    // whether it took effect is not known
  bool logPinned_ = false;  // said that the log grows
};

}  // namespace store
