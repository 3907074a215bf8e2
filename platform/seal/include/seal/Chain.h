#pragma once

#include <optional>
#include <string>

#include "seal/CommitHash.h"
#include "seal/Note.h"
#include "seal/Types.h"

namespace seal {

enum class Verdict : unsigned char {
  kProven,      // whole, and proven by the recorder's public key
  kTail,        // proven up to the last signature; what follows in the last second is consistent
  kConsistent,  // the hashes agree, but nothing proves who made them
  kAltered,
  kIncomplete,  // seals are missing
  kCannotTell,  // of another recorder
};

// Follows the seals of one recorder through its files, from the oldest on. All that it is given may be
// hostile. For each file BeginFile; for each of its seals, in the order of their numbers: Begin, the rows
// that the file has from `firstSeq` to `lastSeq`, End. The first thing wrong is kept as reason; a file goes
// on after it only with the next BeginFile.
class Chain {
 public:
  // The public key that proves; without it nothing is.
  explicit Chain(const std::optional<PublicKey>& trusted) : trusted_(trusted) {}

  void BeginFile();
  // False: the file is not to be followed further.
  bool Begin(const Seal& seal);
  CommitHash& Rows() { return *commit_; }
  bool End();

  // Of the current file.
  Verdict FileVerdict() const;
  const std::string& Reason() const { return reason_; }  // empty: nothing is wrong
  const PublicKey& Root() const { return root_; }
  const Place& Last() const { return last_.place; }
  std::int64_t ProvenTo() const { return provenTo_; }  // last sequence number under a signature; 0: none
  std::int64_t Tail() const { return tail_; }          // seals after the last signature
  // A signature of this file also proves the end of the file before it, with its tail.
  bool ProvesBefore() const { return provesBefore_; }

 private:
  bool Fail(Verdict verdict, std::string reason);
  void Miss(std::string reason);
  void ForgetOtherRecorder(const Seal& seal);
  bool CheckOrder(const Seal& seal);
  bool CheckFile(const Seal& seal);
  bool CheckEpoch(const Seal& seal);

  std::optional<PublicKey> trusted_;
  std::optional<CommitHash> commit_;
  Seal seal_;  // the current one
  NoteItems items_;
  Seal last_;  // the one before, number 0: none
  bool lastEndsEpoch_ = false;
  bool failed_ = false;
  bool fileBegins_ = true;
  bool follows_ = false;  // the file on the one before it
  bool provesBefore_ = false;
  bool adjacent_ = false;  // the current seal is the one after last_
  Verdict verdict_ = Verdict::kProven;
  std::string reason_;
  PublicKey root_{};
  PublicKey lastRoot_{};
  PublicKey epochKey_{};
  std::int64_t provenTo_ = 0;
  std::int64_t tail_ = 0;
};

}  // namespace seal
