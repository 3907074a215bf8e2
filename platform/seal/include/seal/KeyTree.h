#pragma once

#include <span>

#include "seal/Types.h"

namespace seal {

// The keys of a recorder's epochs, as the leaves of a binary tree of Ed25519 keys in which each key certifies
// the two below it. Only the secrets of this epoch and of those to come are held; the ones before cannot be
// computed from them. So an epoch's key is proven by the root's public key alone, whatever is lost of the
// epochs before it.
class KeyTree {
 public:
  static constexpr int kLevels = 20;  // a million epochs: twenty years of ten minutes each
  static constexpr std::int64_t kEpochs = std::int64_t{1} << kLevels;
  static constexpr std::size_t kPathBytes = std::size_t{kLevels} * 96;
  static constexpr std::size_t kStateBytes = 8 + 32 + 32 + std::size_t{kLevels} * 192;

  KeyTree() = default;
  // At epoch 0. The seed is the caller's to wipe: who has it has all keys.
  explicit KeyTree(const Seed& seed);
  ~KeyTree() { Wipe(); }
  KeyTree(const KeyTree&) = default;
  KeyTree& operator=(const KeyTree&) = default;

  const PublicKey& Root() const { return root_; }
  std::int64_t Epoch() const { return epoch_; }

  // Signs with the epoch's key.
  Signature SignHash(const Hash& hash) const;

  // Goes on to the next epoch and destroys this one's key here; copies keep theirs. False, and nothing
  // changes, after the last.
  bool Advance();

  // For each level from the one below the root: public key, and its certificate by the key above.
  void PutPath(std::span<unsigned char, kPathBytes> path) const;
  // The public key of an epoch; false where this is no path from the root to it.
  static bool CheckPath(const PublicKey& root, std::int64_t epoch, std::span<const unsigned char> path,
                        PublicKey& key);
  static bool CheckHash(const PublicKey& key, const Hash& hash, const Signature& signature);

  // All that is held, secrets among it: for the key file alone.
  void Save(std::span<unsigned char, kStateBytes> state) const;
  // False, and all is zero, where the epoch is none.
  bool Load(std::span<const unsigned char, kStateBytes> state);

  void Wipe();

 private:
  struct Node {
    PublicKey key{};
    Signature certificate{};
  };
  struct Sibling {  // to the right of the path, for later
    Seed seed{};
    Signature certificate{};
  };

  void Descend(int level, Seed seed);

  PublicKey root_{};
  std::int64_t epoch_ = 0;
  std::array<unsigned char, 64> leaf_{};  // secret key
  std::array<Node, kLevels> path_{};
  std::array<Sibling, kLevels> siblings_{};
};

}  // namespace seal
