#pragma once

#include <cstddef>
#include <string_view>

#include "seal/HashState.h"

namespace seal {

// The hash of one commit: over the previous hash, the seal's fields and note, and the canonical bytes of the
// commit's rows in the order of their sequence numbers. These bytes are the same on every machine and do not
// depend on how SQLite stores a row. Allocates nothing. For each row call BeginRow, then add its values in
// the order of the columns.
class CommitHash {
 public:
  // Uses the seal's number, sequence numbers, tick, epoch and note.
  CommitHash(const Hash& previous, const Seal& seal);

  void BeginRow(std::string_view table, std::size_t columns);
  void Add(std::int64_t value);
  void Add(std::string_view text);
  void AddNull();

  // Call at most once, after all rows.
  Hash End();

 private:
  void PutNumber(unsigned char first, int bits, std::uint64_t number);
  void PutBytes(std::string_view text);
  void Flush();

  HashState state_;
  std::size_t used_ = 0;
  std::array<unsigned char, 512> buffer_;
};

// The bytes that a seal's signature signs.
std::array<unsigned char, 40> SignedBytes(const Hash& hash);

}  // namespace seal
