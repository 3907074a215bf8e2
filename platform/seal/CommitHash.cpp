#include "seal/CommitHash.h"

#include <algorithm>

#include "BigEndian64.h"

namespace seal {
namespace {

constexpr unsigned char kSealText[] = {'M', 'M', 'D', 'B', 's', 'e', 'a', 'l'};

}  // namespace

CommitHash::CommitHash(const Hash& previous, const Seal& seal) : state_(Label::kCommit) {
  std::array<unsigned char, 32 + 5 * 8 + 4> head;
  unsigned char* p = std::copy(previous.begin(), previous.end(), head.begin());
  for (const std::int64_t field :
       {seal.place.number, seal.firstSeq, seal.lastSeq, seal.lastTick, seal.epoch}) {
    PutU64(p, static_cast<std::uint64_t>(field));
    p += 8;
  }
  PutU32(p, static_cast<std::uint32_t>(seal.note.size()));
  state_.Add(head);
  state_.Add(seal.note);
}

std::array<unsigned char, 40> SignedBytes(const Hash& hash) {
  std::array<unsigned char, 40> bytes;
  std::copy(hash.begin(), hash.end(), std::copy(std::begin(kSealText), std::end(kSealText), bytes.begin()));
  return bytes;
}

}  // namespace seal
