#pragma once

#include <span>

#include "seal/Types.h"

namespace seal {

// The keys of a recorder's epochs: the leaves of a binary tree of Ed25519 keys, in which each key certifies
// the two below it. Holds only the secrets of this epoch and later ones; earlier ones cannot be computed from
// them. The root's public key alone proves an epoch's key, even if files of earlier epochs are lost.
class KeyTree {
 public:
  static constexpr int kLevels = 20;  // a million epochs: twenty years of ten minutes each
  static constexpr std::int64_t kEpochs = std::int64_t{1} << kLevels;
  static constexpr std::size_t kPathBytes = std::size_t{kLevels} * 96;
  static constexpr std::size_t kStateBytes = 8 + 32 + 32 + std::size_t{kLevels} * 192;

  KeyTree() = default;
  // Starts at epoch 0. The caller must wipe the seed: it gives all keys.
  explicit KeyTree(const Seed& seed);
  ~KeyTree() { Wipe(); }
  KeyTree(const KeyTree&) = default;
  KeyTree& operator=(const KeyTree&) = default;

  const PublicKey& Root() const { return root_; }
  std::int64_t Epoch() const { return epoch_; }

  // Signs with the epoch's key.
  Signature SignHash(const Hash& hash) const;

  // Moves to the next epoch and destroys this epoch's key in this object, but not in copies of it. False, and
  // no change, in the last epoch.
  bool Advance();

  // Writes the public key and its certificate for each level, from the one below the root.
  void PutPath(std::span<unsigned char, kPathBytes> path) const;
  // A path that was checked, and the public key of its epoch.
  struct GoodPath {
    PublicKey root{};
    std::int64_t epoch = 0;
    PublicKey key{};
    Bytes path;
  };
  // Sets `good` to the path. False if `path` does not lead from the root to a key of the epoch. Certificates
  // that `good` has already are not checked again.
  static bool CheckPath(const PublicKey& root, std::int64_t epoch, std::span<const unsigned char> path,
                        GoodPath& good);
  static bool CheckHash(const PublicKey& key, const Hash& hash, const Signature& signature);

  // Writes everything, secrets included: only for the key file.
  void Save(std::span<unsigned char, kStateBytes> state) const;
  // False, with the secrets wiped, if the epoch is invalid.
  bool Load(std::span<const unsigned char, kStateBytes> state);

  void Wipe();

 private:
  struct Node {
    PublicKey key{};
    Signature certificate{};
  };
  struct Sibling {  // right of the path, for later epochs
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
