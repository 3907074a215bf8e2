#include "seal/Sealer.h"

#include <utility>

namespace seal {
namespace {

// A larger jump between two starts is forged; accepting it would use up the numbers.
constexpr std::int64_t kMostSeals = std::int64_t{1} << 32;

}  // namespace

KeyFile::Outcome Sealer::UseKey(const std::string& path, const std::string& hardware) {
  return key_.Open(path, hardware, tree_, last_);
}

// Checks no signature: a forged last seal gains nothing, because it stays unproven.
bool Sealer::Trusted(const Found& found) const {
  const std::int64_t more = found.last.place.number - last_.number;
  if (found.root != tree_.Root() || found.last.place.number <= 0 || more < 0 || more > kMostSeals)
    return false;
  return more > 0 || found.last.place.hash == last_.hash;
}

void Sealer::StartRun(const std::array<unsigned char, 16>& run, const std::optional<Found>& found,
                      Bytes earlier) {
  run_ = run;
  start_ = {last_, found ? found->last.place : Place()};
  earlier_ = last_.number == 0 ? std::move(earlier) : Bytes();
  startDue_ = true;
  ending_ = false;
  if (found && Trusted(*found)) {
    FinishMove(found->last);
    last_ = found->last.place;
  } else if (last_.number != 0) {
    // Seals after the one that the recorder remembers may exist elsewhere: no number comes twice.
    skipped_ = kUnknownSeals;
  }
}

// Moves the key if power was lost between an epoch's last seal and the move: no epoch ends twice.
void Sealer::FinishMove(const Seal& last) {
  if (!HasKey() || last.epoch != tree_.Epoch() || !last.isSigned) return;
  NoteItems items;
  if (!ReadNote(last.note, items) || !items.endsEpoch) return;
  KeyTree next = tree_;
  const Signature again = next.SignHash(last.place.hash);
  if (again != last.signature || !next.Advance() || !key_.Save(next, last.place)) return;
  tree_ = next;
}

void Sealer::BeginFile(std::int64_t number) {
  file_ = number;
  fileDue_ = true;
}

bool Sealer::EndsEpoch(std::int64_t tick) const {
  return startDue_ || ending_ || keyStuck_ || tick - epochTick_ >= kEpochMs || tick < epochTick_;
}

void Sealer::Begin(std::int64_t firstSeq, std::int64_t lastSeq, std::int64_t lastTick) {
  seal_.place.number = last_.number + 1 + skipped_;
  seal_.firstSeq = firstSeq;
  seal_.lastSeq = lastSeq;
  seal_.lastTick = lastTick;
  seal_.epoch = tree_.Epoch();
  endsEpoch_ = HasKey() && EndsEpoch(lastTick);
  seal_.isSigned = HasKey() && (endsEpoch_ || fileDue_ || lastTick - signedTick_ >= kSignAfterMs ||
                                lastTick < signedTick_ || unsigned_ + 1 >= kMostUnsigned);
  PutNote(endsEpoch_);
  commit_.emplace(last_.hash, seal_);
}

void Sealer::PutNote(bool endsEpoch) {
  seal_.note.clear();
  if (fileDue_) Put(seal_.note, FileItem{last_.hash, tree_.Root(), run_, file_});
  if (HasKey() && (fileDue_ || pathDue_)) {
    std::array<unsigned char, KeyTree::kPathBytes> path;
    tree_.PutPath(path);
    PutItem(seal_.note, ItemType::kPath, path);
  }
  if (endsEpoch) PutItem(seal_.note, ItemType::kEpochEnd, {});
  if (startDue_) Put(seal_.note, start_);
  if (startDue_ && !earlier_.empty()) PutItem(seal_.note, ItemType::kEarlier, earlier_);
}

const Seal& Sealer::End() {
  seal_.place.hash = commit_->End();
  commit_.reset();
  if (seal_.isSigned) seal_.signature = tree_.SignHash(seal_.place.hash);
  return seal_;
}

void Sealer::Committed() {
  last_ = seal_.place;
  fileDue_ = pathDue_ = startDue_ = false;
  skipped_ = 0;
  ++unsigned_;
  if (!seal_.isSigned) return;
  unsigned_ = 0;
  signedTick_ = seal_.lastTick;
  if (endsEpoch_) MoveKey();
}

// Runs only once the epoch's last seal is on the medium. If the key file fails, the epoch goes on and each
// seal ends it again until the key has moved.
void Sealer::MoveKey() {
  KeyTree next = tree_;
  keyStuck_ = !next.Advance() || !key_.Save(next, last_);
  if (keyStuck_) return;
  tree_ = next;
  pathDue_ = true;
  epochTick_ = seal_.lastTick;
}

void Sealer::Skip() {
  last_ = seal_.place;
  skipped_ = 0;
}

bool Sealer::Settle(const Place& inFile) {
  if (inFile == last_) return true;
  if (inFile == seal_.place) {
    Committed();
    return true;
  }
  return inFile.number == 0 && fileDue_;
}

}  // namespace seal
