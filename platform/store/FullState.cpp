#include "FullState.h"

#include <cstring>

#include "Tables.h"

namespace store {

void FullState::Keep(const RecordView& record) {
  const int keyColumns = kTables[record.header.table].keyColumns;
  if (keyColumns == kNoState) return;
  const std::size_t keyBytes = CellBytes(record.header.table, keyColumns, record.cells);
  Slot* slot = Find(record, keyBytes);
  if (slot == nullptr) return;
  slot->header = record.header;
  slot->keyBytes = keyBytes;
  slot->cells.assign(record.cells, record.cells + record.header.cellBytes);
}

FullState::Slot* FullState::Find(const RecordView& record, std::size_t keyBytes) {
  std::vector<Slot>& slots = slots_[record.header.table];
  for (Slot& slot : slots) {
    if (slot.keyBytes == keyBytes && std::memcmp(slot.cells.data(), record.cells, keyBytes) == 0)
      return &slot;
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
