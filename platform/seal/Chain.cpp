#include "seal/Chain.h"

#include <utility>

#include "seal/KeyTree.h"
#include "seal/Sealer.h"

namespace seal {

void Chain::BeginFile() {
  if (failed_) last_ = Seal();  // the seal before the next file is unknown
  failed_ = false;
  fileBegins_ = true;
  verdict_ = Verdict::kProven;
  reason_.clear();
  provenTo_ = tail_ = 0;
  follows_ = provesBefore_ = false;
  root_ = {};
}

bool Chain::Fail(Verdict verdict, std::string reason) {
  failed_ = true;
  verdict_ = verdict;
  reason_ = std::move(reason);
  return false;
}

// Notes that seals are missing. The file itself can still be sound.
void Chain::Miss(std::string reason) {
  verdict_ = Verdict::kIncomplete;
  if (reason_.empty()) reason_ = std::move(reason);
}

bool Chain::Begin(const Seal& seal) {
  seal_ = seal;
  if (!ReadNote(seal_.note, items_)) return Fail(Verdict::kAltered, "the note cannot be read");
  if (fileBegins_ && items_.hasFile) ForgetOtherRecorder(seal_);
  if (!CheckOrder(seal_) || !CheckFile(seal_) || !CheckEpoch(seal_)) return false;
  commit_.emplace(items_.hasFile ? items_.file.previous : last_.place.hash, seal_);
  return true;
}

// Starts anew at a file of another recorder, or at the first one of a recorder without a key.
void Chain::ForgetOtherRecorder(const Seal& seal) {
  const PublicKey& root = items_.file.root;
  if (root != lastRoot_ || (root == PublicKey{} && seal.place.number == 1)) last_ = Seal();
  lastRoot_ = root;
}

bool Chain::CheckOrder(const Seal& seal) {
  const std::int64_t number = seal.place.number;
  if (number <= 0 || seal.firstSeq <= 0 || seal.lastSeq < seal.firstSeq)
    return Fail(Verdict::kAltered, "impossible numbers");
  // A start leaves out numbers if it does not know the last seals of the run before.
  adjacent_ = last_.place.number != 0 &&
              (items_.hasFile ? items_.file.previous == last_.place.hash : number - 1 == last_.place.number);
  if (number <= last_.place.number) return Fail(Verdict::kAltered, "the number comes again");
  if (!fileBegins_ && !adjacent_)
    return Fail(Verdict::kAltered,
                "the seals before it were removed, from " + std::to_string(last_.place.number + 1) + " on");
  if (!fileBegins_ && seal.firstSeq <= last_.lastSeq)
    return Fail(Verdict::kAltered, "its records are those of another seal, too");
  return true;
}

bool Chain::CheckFile(const Seal& seal) {
  if (items_.hasFile != fileBegins_)
    return Fail(Verdict::kAltered,
                fileBegins_ ? "the file's first seals were removed" : "a file begins within another");
  if (!fileBegins_) return true;
  fileBegins_ = false;
  root_ = items_.file.root;
  run_ = items_.file.run;
  if (trusted_ && root_ != PublicKey{} && root_ != *trusted_)
    return Fail(Verdict::kCannotTell, "sealed by another recorder, " + Fingerprint(root_));
  if (!adjacent_ && last_.place.number != 0 && seal.place.number - 1 == last_.place.number)
    return Fail(Verdict::kAltered, "it does not follow the seal before");
  if (last_.place.number != 0 && !adjacent_)
    Miss("the seals between " + std::to_string(last_.place.number) + " and " +
         std::to_string(seal.place.number) + " are missing before this file");
  follows_ = adjacent_;
  if (!adjacent_ && items_.hasStart && items_.start.found.number < items_.start.expected.number)
    Miss("when the run began, seals up to " + std::to_string(items_.start.expected.number) +
         " were expected and up to " + std::to_string(items_.start.found.number) + " were found");
  return true;
}

// Each epoch ends with a seal that needs the epoch's key. Nobody can make it with later keys only.
bool Chain::CheckEpoch(const Seal& seal) {
  const bool keyed = root_ != PublicKey{};
  if (!keyed) return !seal.isSigned || Fail(Verdict::kAltered, "signed without a recorder's key");
  const bool next = seal.epoch == last_.epoch + 1 && lastEndsEpoch_;
  if (adjacent_ && seal.epoch != last_.epoch && !next)
    return Fail(Verdict::kAltered, "epoch " + std::to_string(seal.epoch) + " follows on epoch " +
                                       std::to_string(last_.epoch) + ", which was not ended");
  if (seal.epoch < last_.epoch) return Fail(Verdict::kAltered, "the epoch goes back");
  if (items_.endsEpoch && !seal.isSigned) return Fail(Verdict::kAltered, "an epoch ends without a signature");
  const std::int64_t since = seal.lastTick - signedTick_;
  if (!seal.isSigned && (items_.hasFile || since < 0 || since >= Sealer::kSignAfterMs))
    return Fail(Verdict::kAltered, "its signature was removed");
  const bool begins = items_.hasFile || seal.epoch != last_.epoch;
  if (!begins && items_.path.empty()) return true;
  if (KeyTree::CheckPath(root_, seal.epoch, items_.path, path_)) return true;
  return Fail(Verdict::kAltered, "the key of epoch " + std::to_string(seal.epoch) + " is not the recorder's");
}

bool Chain::End() {
  if (commit_->End() != seal_.place.hash)
    return Fail(Verdict::kAltered, "the records are not those that were sealed");
  if (seal_.isSigned && !KeyTree::CheckHash(path_.key, seal_.place.hash, seal_.signature))
    return Fail(Verdict::kAltered, "the signature is wrong");
  tail_ = seal_.isSigned ? 0 : tail_ + 1;
  if (seal_.isSigned) {
    provenTo_ = seal_.lastSeq;
    signedTick_ = seal_.lastTick;
  }
  provesBefore_ = provesBefore_ || (seal_.isSigned && follows_);
  last_ = seal_;
  lastEndsEpoch_ = items_.endsEpoch;
  return true;
}

Verdict Chain::FileVerdict() const {
  if (verdict_ != Verdict::kProven) return verdict_;
  if (!trusted_ || root_ != *trusted_ || provenTo_ == 0) return Verdict::kConsistent;
  return tail_ == 0 ? Verdict::kProven : Verdict::kTail;
}

}  // namespace seal
