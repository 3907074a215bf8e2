#pragma once

#include <cstddef>
#include <string_view>

#include "seal/HashState.h"

namespace seal {

// Hashes one row of a recording over its canonical bytes, which are the same on every machine and do not
// depend on how SQLite stores it. Allocates nothing. The values come in the order of the columns:
//   RowHash row("speed", 7);
//   row.Add(std::int64_t{12}); ...
//   const Hash hash = row.End();
class RowHash {
 public:
  RowHash(std::string_view table, std::size_t columns);

  void Add(std::int64_t value);
  void Add(std::string_view text);
  void AddNull();

  // At most once, after all columns.
  Hash End();

 private:
  void PutByte(unsigned char byte);
  void PutNumber(std::uint64_t number);
  void PutText(std::string_view text);
  void Flush();

  HashState state_;
  std::size_t used_ = 0;
  std::array<unsigned char, 256> buffer_;
};

}  // namespace seal
