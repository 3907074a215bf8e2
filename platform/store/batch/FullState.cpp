#include "FullState.h"

#include <cstring>

#include "Tables.h"

namespace store {

void FullState::Keep(const RecordHeader& header, const unsigned char* cells) {
  const int keyColumns = kTables[header.table].keyColumns;
  if (keyColumns == kNoState) return;
  const std::size_t keyBytes = CellBytes(header.table, keyColumns, cells);
  Slot* slot = Find(header.table, cells, keyBytes);
  if (slot == nullptr) return;
  slot->header = header;
  slot->keyBytes = keyBytes;
  slot->cells.assign(cells, cells + header.cellBytes);
}

FullState::Slot* FullState::Find(TableId table, const unsigned char* key, std::size_t keyBytes) {
  std::vector<Slot>& slots = slots_[table];
  for (Slot& slot : slots) {
    if (slot.keyBytes == keyBytes && std::memcmp(slot.cells.data(), key, keyBytes) == 0) return &slot;
  }
  if (slots.size() == kMaxSlots) return nullptr;
  return &slots.emplace_back();
}

void FullState::Restate(Batch& batch, std::int64_t& seq, std::int64_t tick) const {
  for (const std::vector<Slot>& slots : slots_) {
    for (const Slot& slot : slots) {
      RecordHeader header = slot.header;
      header.seq = ++seq;
      header.tick = tick;
      header.event = Event::kRestated;
      header.critical = false;
      batch.AddCells(header, slot.cells.data());
    }
  }
}

}  // namespace store
