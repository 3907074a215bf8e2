#include "FullState.h"

#include <algorithm>
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

std::int64_t FullState::Count() const {
  std::size_t count = 0;
  for (const std::vector<Slot>& slots : slots_) count += slots.size();
  return static_cast<std::int64_t>(count);
}

void FullState::Restate(Batch& batch, std::int64_t& seq, std::int64_t tick) const {
  std::vector<const Slot*> inOrder;
  for (const std::vector<Slot>& slots : slots_) {
    for (const Slot& slot : slots) inOrder.push_back(&slot);
  }
  std::sort(inOrder.begin(), inOrder.end(),
            [](const Slot* a, const Slot* b) { return a->header.seq < b->header.seq; });
  for (const Slot* slot : inOrder) {
    RecordHeader header = slot->header;
    header.seq = ++seq;
    header.tick = tick;
    header.event = Event::kRestated;
    header.critical = false;
    batch.AddCells(header, slot->cells.data());
  }
}

}  // namespace store
