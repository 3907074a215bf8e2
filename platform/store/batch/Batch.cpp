#include "Batch.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Utf8.h"

namespace store {
namespace {

constexpr std::size_t kMaxText = 1024;

RecordHeader HeaderAt(const unsigned char* p) {
  RecordHeader header;
  std::memcpy(&header, p, sizeof header);
  return header;
}

std::uint32_t CellBytes(const Value& value) {
  if (!value.IsText()) return sizeof(std::int64_t);
  return static_cast<std::uint32_t>(sizeof(std::uint32_t) + CutText(value.Text(), kMaxText).size());
}

unsigned char* PutInteger(unsigned char* cell, std::int64_t number) {
  std::memcpy(cell, &number, sizeof number);
  return cell + sizeof number;
}

unsigned char* PutText(unsigned char* cell, std::string_view whole) {
  const std::string_view text = CutText(whole, kMaxText);
  const auto size = static_cast<std::uint32_t>(text.size());
  std::memcpy(cell, &size, sizeof size);
  cell += sizeof size;
  text.copy(reinterpret_cast<char*>(cell), size);
  MakeUtf8(reinterpret_cast<char*>(cell), size);
  return cell + size;
}

}  // namespace

std::int64_t TakeInteger(const unsigned char*& cell) {
  std::int64_t value = 0;
  std::memcpy(&value, cell, sizeof value);
  cell += sizeof value;
  return value;
}

std::string_view TakeText(const unsigned char*& cell) {
  std::uint32_t size = 0;
  std::memcpy(&size, cell, sizeof size);
  const auto* text = reinterpret_cast<const char*>(cell + sizeof size);
  cell += sizeof size + size;
  return {text, size};
}

std::size_t CellBytes(TableId table, int columns, const unsigned char* cells) {
  const unsigned char* end = cells;
  for (int i = 0; i < columns; ++i) {
    if (kTables[table].columns[static_cast<std::size_t>(i)].type == ColumnType::kText) {
      (void)TakeText(end);
    } else {
      (void)TakeInteger(end);
    }
  }
  return static_cast<std::size_t>(end - cells);
}

// Appends the header and room for its cells. Returns the cells.
unsigned char* Batch::Append(const RecordHeader& header) {
  const std::size_t start = bytes_.size();
  bytes_.resize(start + sizeof header + header.cellBytes);
  mostBytes_ = std::max(mostBytes_, bytes_.size());
  std::memcpy(bytes_.data() + start, &header, sizeof header);
  return bytes_.data() + start + sizeof header;
}

const unsigned char* Batch::Add(RecordHeader& header, const RowView& row) {
  header.table = row.Table();
  header.cellBytes = 0;
  for (const Value& value : row.Values()) header.cellBytes += CellBytes(value);
  MakeRoom(sizeof header + header.cellBytes);
  unsigned char* const cells = Append(header);
  unsigned char* cell = cells;
  for (const Value& value : row.Values()) {
    cell = value.IsText() ? PutText(cell, value.Text()) : PutInteger(cell, value.Number());
  }
  return cells;
}

void Batch::AddCells(const RecordHeader& header, const unsigned char* cells) {
  MakeRoom(sizeof header + header.cellBytes);
  std::copy_n(cells, header.cellBytes, Append(header));
}

RecordHeader Batch::First() const {
  return HeaderAt(bytes_.data());
}

std::int64_t Batch::Count() const {
  std::int64_t count = 0;
  std::size_t offset = 0;
  RecordView record;
  while (Next(offset, record)) ++count;
  return count;
}

bool Batch::Next(std::size_t& offset, RecordView& record) const {
  if (offset >= bytes_.size()) return false;
  record.header = HeaderAt(bytes_.data() + offset);
  record.cells = bytes_.data() + offset + sizeof record.header;
  offset += sizeof record.header + record.header.cellBytes;
  return true;
}

void Batch::RemoveUpTo(std::int64_t seq) {
  std::size_t end = 0;
  std::size_t next = 0;
  RecordView record;
  while (Next(next, record) && record.header.seq <= seq) end = next;
  bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(end));
}

void Batch::MakeRoom(std::size_t size) {
  if (bytes_.size() + size <= maxBytes_) return;
  // Drops a quarter at once, so that the rest is moved rarely.
  const std::size_t goal = std::max(size, maxBytes_ / 4);
  const std::size_t freed = Drop(goal, false);
  if (freed < size) (void)Drop(goal - freed, true);
}

std::size_t Batch::Drop(std::size_t goal, bool critical) {
  std::size_t freed = 0;
  std::size_t kept = 0;
  std::size_t next = 0;
  RecordView record;
  while (freed < goal) {
    const std::size_t start = next;
    if (!Next(next, record)) break;
    if (record.header.critical == critical) {
      CountLoss(record.header);
      freed += next - start;
    } else {
      std::memmove(bytes_.data() + kept, bytes_.data() + start, next - start);
      kept += next - start;
    }
  }
  bytes_.erase(bytes_.begin() + static_cast<std::ptrdiff_t>(kept),
               bytes_.begin() + static_cast<std::ptrdiff_t>(next));
  return freed;
}

void Batch::CountLoss(const RecordHeader& header) {
  Loss& loss = losses_[header.table];
  if (loss.count == 0) loss.fromTick = header.tick;
  loss.toTick = std::max(loss.toTick, header.tick);
  ++loss.count;
  hasLosses_ = true;
}

Losses Batch::TakeLosses() {
  hasLosses_ = false;
  return std::exchange(losses_, Losses{});
}

}  // namespace store
