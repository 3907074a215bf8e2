#pragma once

#include <optional>
#include <string>

#include "seal/CommitHash.h"
#include "seal/KeyFile.h"
#include "seal/KeyTree.h"
#include "seal/Note.h"
#include "seal/Types.h"

namespace seal {

// The last seal that an earlier run left, and the recorder's key that its file names.
struct Found {
  Seal last;
  PublicKey root{};
};

// Seals the commits of a recorder, one after the other. Without a key the seals are a chain of hashes that
// proves nothing by itself. For each commit: Begin, its rows, End; then Committed when it is on
// the medium, or Settle when that is in doubt; an attempt that is given up needs neither.
class Sealer {
 public:
  static constexpr std::int64_t kSignAfterMs = 1000;
  static constexpr std::int64_t kEpochMs = 600'000;
  static constexpr int kMostUnsigned = 64;  // commits, while no ticks are told

  // Opens the recorder's key; any answer but kOk: goes on without.
  KeyFile::Outcome UseKey(const std::string& path, const std::string& hardware);
  bool HasKey() const { return key_.IsOpen(); }
  const PublicKey& Root() const { return tree_.Root(); }

  // A run begins: its first seal tells what was expected of the last run and what was found, and ends the
  // epoch that this was in. `earlier`: what the first seal ever is to hold of older files.
  void StartRun(const std::array<unsigned char, 16>& run, const std::optional<Found>& found, Bytes earlier);
  // The next seal is the first of a file, that of this number.
  void BeginFile(std::int64_t number);
  // From now on each seal is signed and ends its epoch: any can be the last.
  void EndRun() { ending_ = true; }

  void Begin(std::int64_t firstSeq, std::int64_t lastSeq, std::int64_t lastTick);
  CommitHash& Rows() { return *commit_; }
  const Seal& End();  // valid until the next Begin

  void Committed();
  // What the file has as its last seal, number 0 for none. False: neither the last one nor the one attempted.
  bool Settle(const Place& inFile);

  const Place& Last() const { return last_; }
  // The key could not be moved on: the medium of the key file fails. Said once by the caller.
  bool KeyStuck() const { return keyStuck_; }

 private:
  bool Trusted(const Found& found) const;
  void FinishMove(const Seal& last);
  bool EndsEpoch(std::int64_t tick) const;
  void PutNote(bool endsEpoch);
  void MoveKey();

  KeyFile key_;
  KeyTree tree_;
  Place last_;  // committed
  Seal seal_;   // the one attempted
  std::optional<CommitHash> commit_;
  bool endsEpoch_ = false;  // the one attempted

  std::array<unsigned char, 16> run_{};
  std::int64_t file_ = 0;
  StartItem start_;
  Bytes earlier_;
  bool fileDue_ = false;
  bool pathDue_ = false;
  bool startDue_ = false;
  bool ending_ = false;
  bool keyStuck_ = false;
  std::int64_t epochTick_ = 0;
  std::int64_t signedTick_ = 0;
  int unsigned_ = 0;
};

}  // namespace seal
