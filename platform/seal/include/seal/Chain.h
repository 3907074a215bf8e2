#pragma once

#include <optional>
#include <string>

#include "seal/CommitHash.h"
#include "seal/KeyTree.h"
#include "seal/Note.h"
#include "seal/Types.h"

namespace seal {

enum class Verdict : unsigned char {
  kProven,      // complete, and proven by the recorder's public key
  kTail,        // proven up to the last signature; the last second after it is consistent
  kConsistent,  // the hashes agree, but nothing proves who made them
  kAltered,
  kIncomplete,  // seals are missing
  kCannotTell,  // sealed by another recorder
};

// Checks the seals of one recorder through its files, oldest first. All input may be hostile. Call BeginFile
// for each file. For each of its seals, in the order of their numbers, call Begin, add the file's rows from
// `firstSeq` to `lastSeq`, and call End. Keeps the first fault as the reason; after a fault go on with the
// next file.
class Chain {
 public:
  // `trusted` is the public key that proves files. Without it no file is proven.
  explicit Chain(const std::optional<PublicKey>& trusted) : trusted_(trusted) {}

  void BeginFile();
  // False: stop with this file.
  bool Begin(const Seal& seal);
  CommitHash& Rows() { return *commit_; }
  bool End();
  // The caller cannot check the rest of this file.
  void Break() { failed_ = true; }

  // Of the current file.
  Verdict FileVerdict() const;
  const std::string& Reason() const { return reason_; }  // empty: no fault
  const PublicKey& Root() const { return root_; }
  std::string RunId() const { return {run_.begin(), run_.end()}; }
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
  Seal seal_;  // current seal
  NoteItems items_;
  Seal last_;  // previous seal; number 0: none
  bool lastEndsEpoch_ = false;
  bool failed_ = false;
  bool fileBegins_ = true;
  bool follows_ = false;  // the file follows the previous one
  bool provesBefore_ = false;
  bool adjacent_ = false;  // the current seal is the one after last_
  Verdict verdict_ = Verdict::kProven;
  std::string reason_;
  PublicKey root_{};
  std::array<unsigned char, 16> run_{};
  PublicKey lastRoot_{};
  KeyTree::GoodPath path_;  // of the epoch
  std::int64_t provenTo_ = 0;
  std::int64_t signedTick_ = 0;  // of the last signature in this file
  std::int64_t tail_ = 0;
};

}  // namespace seal
