#pragma once

#include <array>
#include <vector>

#include "Batch.h"

namespace store {

// The full state: the last record of every source.
class FullState {
 public:
  void Keep(const RecordHeader& header, const unsigned char* cells);

  // Adds all kept records to the batch, restated at this tick, in the order of the originals. Raises `seq` by
  // one for each, as its number.
  void Restate(Batch& batch, std::int64_t& seq, std::int64_t tick) const;

  std::int64_t Count() const;

 private:
  struct Slot {
    RecordHeader header;
    std::size_t keyBytes = 0;
    std::vector<unsigned char> cells;  // keeps its capacity
  };
  // Limits the memory that a peer can take by inventing source numbers.
  static constexpr std::size_t kMaxSlots = 64;

  Slot* Find(TableId table, const unsigned char* key, std::size_t keyBytes);

  std::array<std::vector<Slot>, kTableCount> slots_;
};

}  // namespace store
