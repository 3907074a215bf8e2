#pragma once

#include <cstddef>
#include <span>

#include "seal/Types.h"

namespace seal {

// The first byte hashed, so that hashes of different kinds never match.
enum class Label : unsigned char { kCommit = 1, kKeySlot = 2, kFingerprint = 3 };

// Incremental BLAKE2b. Allocates nothing.
class HashState {
 public:
  explicit HashState(Label label);

  void Add(std::span<const unsigned char> bytes);

  // Call at most once, after all bytes.
  Hash End();

 private:
  alignas(64) std::array<unsigned char, 384> state_;  // libsodium's state
};

}  // namespace seal
