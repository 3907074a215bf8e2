#include "seal/HashState.h"

#include <sodium.h>

namespace seal {
namespace {

static_assert(std::tuple_size_v<Hash> == crypto_generichash_BYTES);

crypto_generichash_state* Of(std::array<unsigned char, 384>& bytes) {
  static_assert(sizeof(crypto_generichash_state) == sizeof bytes && alignof(crypto_generichash_state) <= 64);
  return reinterpret_cast<crypto_generichash_state*>(bytes.data());
}

}  // namespace

HashState::HashState(Label label) {
  const auto first = static_cast<unsigned char>(label);
  (void)crypto_generichash_init(Of(state_), nullptr, 0, sizeof(Hash));
  (void)crypto_generichash_update(Of(state_), &first, 1);
}

void HashState::Add(std::span<const unsigned char> bytes) {
  (void)crypto_generichash_update(Of(state_), bytes.data(), bytes.size());
}

Hash HashState::End() {
  Hash hash;
  (void)crypto_generichash_final(Of(state_), hash.data(), hash.size());
  return hash;
}

}  // namespace seal
