#pragma once

#include "seal/HashState.h"

namespace seal {

// The running hash of one commit: over the hash before it, the seal's own fields and note, and the hashes of
// the commit's rows in the order of their sequence numbers. Allocates nothing.
class CommitHash {
 public:
  // Of the seal: number, sequence numbers, tick, epoch and note.
  CommitHash(const Hash& previous, const Seal& seal);

  void AddRow(const Hash& row) { state_.Add(row); }

  // At most once.
  Hash End() { return state_.End(); }

 private:
  HashState state_;
};

// What a seal's signature is made over.
std::array<unsigned char, 40> SignedBytes(const Hash& hash);

}  // namespace seal
