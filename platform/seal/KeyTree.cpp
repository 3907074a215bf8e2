#include "seal/KeyTree.h"

#include <algorithm>

#include "BigEndian64.h"
#include "Crypto.h"
#include "seal/CommitHash.h"

namespace seal {
namespace {

constexpr unsigned char kKeyText[] = {'M', 'M', 'D', 'B', ' ', 'k', 'e', 'y'};

// The bytes that a node's certificate signs. Level 0 is just below the root; the index counts from the left.
std::array<unsigned char, 49> CertifiedBytes(int level, std::int64_t epoch, const PublicKey& key) {
  std::array<unsigned char, 49> bytes;
  unsigned char* p = std::copy(std::begin(kKeyText), std::end(kKeyText), bytes.begin());
  *p++ = static_cast<unsigned char>(level + 1);
  PutU64(p, static_cast<std::uint64_t>(epoch >> (KeyTree::kLevels - 1 - level)));
  std::copy(key.begin(), key.end(), p + 8);
  return bytes;
}

bool IsRight(std::int64_t epoch, int level) {
  return ((epoch >> (KeyTree::kLevels - 1 - level)) & 1) != 0;
}

template <typename Array>
unsigned char* PutArray(unsigned char* p, const Array& value) {
  return std::copy(value.begin(), value.end(), p);
}

template <typename Array>
const unsigned char* TakeArray(const unsigned char* p, Array& value) {
  std::copy_n(p, value.size(), value.begin());
  return p + value.size();
}

}  // namespace

KeyTree::KeyTree(const Seed& seed) : root_(KeyPair(Derive(seed, Purpose::kSigning)).publicKey) {
  Descend(0, seed);
}

// Makes the path's nodes from this level down. `seed` is that of the node above; the epoch is its leftmost
// leaf.
void KeyTree::Descend(int level, Seed seed) {
  for (auto i = static_cast<std::size_t>(level); i < path_.size(); ++i) {
    Seed signing = Derive(seed, Purpose::kSigning);
    const KeyPair parent(signing);
    Seed left = Derive(seed, Purpose::kLeft);
    siblings_[i].seed = Derive(seed, Purpose::kRight);
    const auto certify = [&](const Seed& child, std::int64_t epoch) {
      Seed childSigning = Derive(child, Purpose::kSigning);
      const PublicKey key = KeyPair(childSigning).publicKey;
      seal::Wipe(childSigning);
      return Node{key, Sign(parent.secretKey, CertifiedBytes(static_cast<int>(i), epoch, key))};
    };
    path_[i] = certify(left, epoch_);
    siblings_[i].certificate = certify(siblings_[i].seed, epoch_ + (kEpochs >> (i + 1))).certificate;
    seed = left;
    seal::Wipe(signing);
    seal::Wipe(left);
  }
  Seed signing = Derive(seed, Purpose::kSigning);
  leaf_ = KeyPair(signing).secretKey;
  seal::Wipe(signing);
  seal::Wipe(seed);
}

bool KeyTree::Advance() {
  if (epoch_ + 1 >= kEpochs) return false;
  int level = kLevels - 1;
  while (IsRight(epoch_, level)) --level;
  Sibling& next = siblings_[static_cast<std::size_t>(level)];
  Seed seed = next.seed;
  Seed signing = Derive(seed, Purpose::kSigning);
  path_[static_cast<std::size_t>(level)] = {KeyPair(signing).publicKey, next.certificate};
  seal::Wipe(signing);
  seal::Wipe(next.seed);
  next.certificate = {};
  ++epoch_;
  Descend(level + 1, seed);
  seal::Wipe(seed);
  return true;
}

Signature KeyTree::SignHash(const Hash& hash) const {
  return Sign(leaf_, SignedBytes(hash));
}

bool KeyTree::CheckHash(const PublicKey& key, const Hash& hash, const Signature& signature) {
  return Verify(key, SignedBytes(hash), signature);
}

void KeyTree::PutPath(std::span<unsigned char, kPathBytes> path) const {
  unsigned char* p = path.data();
  for (const Node& node : path_) p = PutArray(PutArray(p, node.key), node.certificate);
}

bool KeyTree::CheckPath(const PublicKey& root, std::int64_t epoch, std::span<const unsigned char> path,
                        GoodPath& good) {
  if (epoch < 0 || epoch >= kEpochs || path.size() != kPathBytes) return false;
  bool same = good.root == root && good.path.size() == kPathBytes;
  PublicKey above = root;
  const unsigned char* p = path.data();
  for (int level = 0; level < kLevels; ++level) {
    Node node;
    const unsigned char* end = TakeArray(TakeArray(p, node.key), node.certificate);
    const int below = kLevels - 1 - level;
    same = same && epoch >> below == good.epoch >> below &&
           std::equal(p, end, good.path.begin() + (p - path.data()));
    if (!same && !Verify(above, CertifiedBytes(level, epoch, node.key), node.certificate)) return false;
    above = node.key;
    p = end;
  }
  good = {root, epoch, above, {path.begin(), path.end()}};
  return true;
}

void KeyTree::Save(std::span<unsigned char, kStateBytes> state) const {
  unsigned char* p = state.data();
  PutU64(p, static_cast<std::uint64_t>(epoch_));
  p = std::copy_n(leaf_.begin(), sizeof(Seed), PutArray(p + 8, root_));
  for (std::size_t i = 0; i < path_.size(); ++i) {
    p = PutArray(PutArray(p, path_[i].key), path_[i].certificate);
    p = PutArray(PutArray(p, siblings_[i].seed), siblings_[i].certificate);
  }
}

bool KeyTree::Load(std::span<const unsigned char, kStateBytes> state) {
  const unsigned char* p = state.data();
  epoch_ = static_cast<std::int64_t>(GetU64(p));
  Seed signing;
  p = TakeArray(TakeArray(p + 8, root_), signing);
  leaf_ = KeyPair(signing).secretKey;
  seal::Wipe(signing);
  for (std::size_t i = 0; i < path_.size(); ++i) {
    p = TakeArray(TakeArray(p, path_[i].key), path_[i].certificate);
    p = TakeArray(TakeArray(p, siblings_[i].seed), siblings_[i].certificate);
  }
  if (epoch_ >= 0 && epoch_ < kEpochs) return true;
  Wipe();
  return false;
}

void KeyTree::Wipe() {
  seal::Wipe(leaf_);
  for (Sibling& sibling : siblings_) seal::Wipe(sibling.seed);
  epoch_ = 0;
  root_ = {};
}

}  // namespace seal
