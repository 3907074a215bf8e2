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

// Seals the commits of a recorder in order. Without a key the seals are a chain of hashes, which proves
// nothing by itself. For each commit call Begin, add its rows, call End. Then call Committed once it is on
// the medium, or Settle if that is in doubt. An abandoned attempt needs neither.
class Sealer {
 public:
  static constexpr std::int64_t kSignAfterMs = 1000;
  static constexpr std::int64_t kEpochMs = 600'000;
  static constexpr int kMostUnsigned = 64;  // commits, while there are no ticks
  // More seals than a run makes while the key file stands still.
  static constexpr std::int64_t kUnknownSeals = std::int64_t{1} << 20;

  // Opens the recorder's key. Unless kOk, the sealer goes on without a key.
  KeyFile::Outcome UseKey(const std::string& path, const std::string& hardware);
  bool HasKey() const { return key_.IsOpen(); }
  const PublicKey& Root() const { return tree_.Root(); }

  // Begins a run. Its first seal holds the expected and the found last seal of the last run, and ends that
  // run's epoch. `earlier`: digests of older files, which only the very first seal holds.
  void StartRun(const std::array<unsigned char, 16>& run, const std::optional<Found>& found, Bytes earlier);
  // The next seal is the first of the file with this number.
  void BeginFile(std::int64_t number);
  // From now on each seal is signed and ends its epoch, because any can be the last.
  void EndRun() { ending_ = true; }

  void Begin(std::int64_t firstSeq, std::int64_t lastSeq, std::int64_t lastTick);
  CommitHash& Rows() { return *commit_; }
  const Seal& End();  // valid until the next Begin

  void Committed();
  // Leaves a doubtful commit in doubt for good: the next seal follows it, in another file.
  void Skip();
  // Settles a doubtful commit by the last seal in the file (number 0: none). False if that is neither the
  // last committed nor the attempted seal.
  bool Settle(const Place& inFile);

  const Place& Last() const { return last_; }
  // The key could not move because the key file fails. The caller logs it once.
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
  Seal seal_;   // attempted
  std::optional<CommitHash> commit_;
  bool endsEpoch_ = false;  // the attempted seal

  std::array<unsigned char, 16> run_{};
  std::int64_t file_ = 0;
  StartItem start_;
  Bytes earlier_;
  bool fileDue_ = false;
  bool pathDue_ = false;
  bool startDue_ = false;
  bool ending_ = false;
  bool keyStuck_ = false;
  std::int64_t skipped_ = 0;  // numbers that the next seal leaves out
  std::int64_t epochTick_ = 0;
  std::int64_t signedTick_ = 0;
  int unsigned_ = 0;
};

}  // namespace seal
