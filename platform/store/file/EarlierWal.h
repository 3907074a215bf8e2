#pragma once

#include <string>

#include "WalScan.h"

namespace store {

// The WAL that an earlier run left beside its recording.
struct EarlierWal {
  enum class State {
    kNone,     // no WAL, or an empty one
    kFolds,    // can be folded into the recording
    kDamaged,  // must not be folded in
    kForeign,  // has another owner than the recording, or is not a regular file
    kTooLong,
  };
  State state = State::kNone;
  WalFinding finding;

  // Reads at most 16 MB. The WAL must belong to `ownerOfRecording`.
  static EarlierWal Look(const std::string& recording, unsigned int ownerOfRecording);

  // Saves the bytes that cannot be folded in as RECORDING-wal.tail, durably. False on failure.
  bool KeepTail(const std::string& recording) const;
};

}  // namespace store
