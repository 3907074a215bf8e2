#pragma once

#include <cstddef>
#include <span>

#include "seal/Types.h"

namespace seal {

// The first byte of what is hashed, so that a hash of one kind is never one of another.
enum class Label : unsigned char { kCommit = 1, kKeySlot = 2, kFingerprint = 3 };

// BLAKE2b over bytes that come piece by piece. Allocates nothing.
class HashState {
 public:
  explicit HashState(Label label);

  void Add(std::span<const unsigned char> bytes);

  // At most once, after all bytes.
  Hash End();

 private:
  alignas(64) std::array<unsigned char, 384> state_;  // libsodium's
};

}  // namespace seal
