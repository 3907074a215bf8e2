#pragma once

#include <array>
#include <vector>

#include "Batch.h"

namespace store {

// The last record of every source, for each table that has a part in the full state.
class FullState {
 public:
  void Keep(const RecordHeader& header, const unsigned char* cells);

  // Adds every kept record to the batch once more, as restated at this tick, numbered on from `seq`, in the
  // order in which they were kept.
  void Restate(Batch& batch, std::int64_t& seq, std::int64_t tick) const;

  std::int64_t Count() const;

 private:
  struct Slot {
    RecordHeader header;
    std::size_t keyBytes = 0;
    std::vector<unsigned char> cells;  // keeps its capacity
  };
  // A peer that invents numbers of sources must not make this grow.
  static constexpr std::size_t kMaxSlots = 64;

  Slot* Find(TableId table, const unsigned char* key, std::size_t keyBytes);

  std::array<std::vector<Slot>, kTableCount> slots_;
};

}  // namespace store
