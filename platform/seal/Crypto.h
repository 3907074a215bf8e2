#pragma once

#include <span>

#include "seal/HashState.h"

// Wraps libsodium. No call needs an initialisation.
namespace seal {

using SecretKey = std::array<unsigned char, 64>;  // the seed, then the public key

struct KeyPair {
  KeyPair() = default;
  explicit KeyPair(const Seed& seed);
  ~KeyPair();
  KeyPair(const KeyPair&) = delete;
  KeyPair& operator=(const KeyPair&) = delete;

  PublicKey publicKey{};
  SecretKey secretKey{};
};

// Derives a seed for one purpose. Nobody can compute `from` from it.
enum class Purpose : unsigned char { kSigning = 0, kLeft = 1, kRight = 2 };
Seed Derive(const Seed& from, Purpose purpose);

Hash HashOf(Label label, std::span<const unsigned char> bytes);
Signature Sign(const SecretKey& key, std::span<const unsigned char> message);
bool Verify(const PublicKey& key, std::span<const unsigned char> message, const Signature& signature);
void Wipe(std::span<unsigned char> secret);

std::string ToHex(std::span<const unsigned char> bytes);

}  // namespace seal
