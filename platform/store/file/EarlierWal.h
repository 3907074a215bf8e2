#pragma once

#include <string>

#include "WalScan.h"

namespace store {

// The WAL that a run before has left beside its recording.
struct EarlierWal {
  enum class State {
    kNone,     // none, or an empty one
    kFolds,    // can be folded in
    kDamaged,  // must not be
    kForeign,  // not the recording's: another owner's file, or no file
    kTooLong,
  };
  State state = State::kNone;
  WalFinding finding;

  // Reads at most 16 MB of it. `ownerOfRecording` must be its owner, too.
  static EarlierWal Look(const std::string& recording, unsigned int ownerOfRecording);

  // Keeps what will not be folded in as RECORDING-wal.tail, durably. False when that fails.
  bool KeepTail(const std::string& recording) const;
};

}  // namespace store
