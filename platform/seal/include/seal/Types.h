#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// The values that seals are made of. docs/seal.md has the format in bytes and the reasons.
namespace seal {

using Bytes = std::vector<unsigned char>;
using Hash = std::array<unsigned char, 32>;       // BLAKE2b
using PublicKey = std::array<unsigned char, 32>;  // Ed25519
using Signature = std::array<unsigned char, 64>;  // Ed25519
using Seed = std::array<unsigned char, 32>;       // secret: its owner wipes it

// Where a chain of seals stands. Number 0 with zeros for a hash: before the first one.
struct Place {
  std::int64_t number = 0;
  Hash hash{};

  bool operator==(const Place&) const = default;
};

// One row of the table "seal": what one commit wrote.
struct Seal {
  Place place;  // number and hash
  std::int64_t firstSeq = 0;
  std::int64_t lastSeq = 0;
  std::int64_t lastTick = 0;
  std::int64_t epoch = 0;
  Bytes note;  // Note.h; mostly empty
  bool isSigned = false;
  Signature signature{};
};

// 16 hexadecimal digits of a hash of a key or a seal's hash, for people who compare two.
std::string Fingerprint(const std::array<unsigned char, 32>& bytes);

}  // namespace seal
