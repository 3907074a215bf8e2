#include "Crypto.h"

#include <sodium.h>

namespace seal {
namespace {

constexpr char kDerivation[crypto_kdf_CONTEXTBYTES + 1] = "MMDBtree";
constexpr std::size_t kFingerprintBytes = 8;

static_assert(std::tuple_size_v<PublicKey> == crypto_sign_PUBLICKEYBYTES);
static_assert(std::tuple_size_v<Signature> == crypto_sign_BYTES);
static_assert(std::tuple_size_v<Seed> == crypto_sign_SEEDBYTES);
static_assert(std::tuple_size_v<Seed> == crypto_kdf_KEYBYTES);

}  // namespace

KeyPair::KeyPair(const Seed& seed) {
  (void)crypto_sign_seed_keypair(publicKey.data(), secretKey.data(), seed.data());
}

KeyPair::~KeyPair() {
  Wipe(secretKey);
}

Seed Derive(const Seed& from, Purpose purpose) {
  Seed seed;
  (void)crypto_kdf_derive_from_key(seed.data(), seed.size(), static_cast<unsigned char>(purpose), kDerivation,
                                   from.data());
  return seed;
}

Hash HashOf(Label label, std::span<const unsigned char> bytes) {
  HashState state(label);
  state.Add(bytes);
  return state.End();
}

Signature Sign(const SecretKey& key, std::span<const unsigned char> message) {
  Signature signature;
  (void)crypto_sign_detached(signature.data(), nullptr, message.data(), message.size(), key.data());
  return signature;
}

bool Verify(const PublicKey& key, std::span<const unsigned char> message, const Signature& signature) {
  return crypto_sign_verify_detached(signature.data(), message.data(), message.size(), key.data()) == 0;
}

void Wipe(std::span<unsigned char> secret) {
  sodium_memzero(secret.data(), secret.size());
}

std::string ToHex(std::span<const unsigned char> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) text.append({kDigits[byte >> 4], kDigits[byte & 15]});
  return text;
}

std::string Fingerprint(const std::array<unsigned char, 32>& bytes) {
  const Hash hash = HashOf(Label::kFingerprint, bytes);
  return ToHex(std::span(hash).first(kFingerprintBytes));
}

}  // namespace seal
