#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// The values of seals. docs/seal.md has the format in bytes and the reasons.
namespace seal {

using Bytes = std::vector<unsigned char>;
using Hash = std::array<unsigned char, 32>;       // BLAKE2b
using PublicKey = std::array<unsigned char, 32>;  // Ed25519
using Signature = std::array<unsigned char, 64>;  // Ed25519
using Seed = std::array<unsigned char, 32>;       // secret: its owner wipes it

// A position in a chain of seals. Number 0 with a zero hash: before the first seal.
struct Place {
  std::int64_t number = 0;
  Hash hash{};

  bool operator==(const Place&) const = default;
};

// One row of the table "seal", for one commit.
struct Seal {
  Place place;  // number and hash
  std::int64_t firstSeq = 0;
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  std::int64_t epoch = 0;
  Bytes note;  // Note.h; usually empty
  bool isSigned = false;
  Signature signature{};
};

// 16 hexadecimal digits for a key or a seal's hash, for people to compare.
std::string Fingerprint(const std::array<unsigned char, 32>& bytes);

}  // namespace seal
