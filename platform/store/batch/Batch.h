#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "Row.h"

namespace store {

// A record that lies in a batch; valid until the batch changes.
struct RecordView {
  RecordHeader header;
  const unsigned char* cells = nullptr;  // header.cellBytes of them
};

// Cells are the values one after the other in the table's order: 8 bytes for an integer, 4 bytes
// of length and the bytes for a text. They never leave this machine's memory, so their byte order
// is its own. Each call reads one cell and moves on.
std::int64_t TakeInteger(const unsigned char*& cell);
std::string_view TakeText(const unsigned char*& cell);
// Bytes that the first `columns` cells of a table take.
std::size_t CellBytes(TableId table, int columns, const unsigned char* cells);

struct Loss {
  std::int64_t count = 0;
  std::int64_t fromTick = 0;
  std::int64_t toTick = 0;
};
using Losses = std::array<Loss, kTableCount>;

// Records that wait to be written, in the order of their sequence numbers, in one flat buffer that
// keeps its size: adding allocates nothing once it has grown to what the traffic needs.
class Batch {
 public:
  explicit Batch(std::size_t maxBytes) : maxBytes_(maxBytes) {}

  // Beyond the bound the oldest records go first, critical ones only when no others are left; they
  // are counted as losses. Texts are cut to 1024 bytes.
  // Sets the header's table and cellBytes and returns the cells; valid until the batch changes.
  const unsigned char* Add(RecordHeader& header, const RowView& row);

  // The same for cells taken from a record that does not lie in this batch.
  void AddCells(const RecordHeader& header, const unsigned char* cells);

  bool Empty() const { return bytes_.empty(); }
  std::size_t Bytes() const { return bytes_.size(); }
  RecordHeader First() const;  // not of an empty batch
  std::int64_t Count() const;

  // The record at the offset, which is moved to the next one; false at the end.
  bool Next(std::size_t& offset, RecordView& record) const;

  // Removes the records up to and including this sequence number.
  void RemoveUpTo(std::int64_t seq);
  void Clear() { bytes_.clear(); }

  // The most bytes that there have been at a time.
  std::size_t MostBytes() const { return mostBytes_; }

  // What went since the last call.
  Losses TakeLosses();
  bool HasLosses() const { return hasLosses_; }

 private:
  unsigned char* Append(const RecordHeader& header);
  void MakeRoom(std::size_t size);
  std::size_t Drop(std::size_t goal, bool critical);
  void CountLoss(const RecordHeader& header);

  std::size_t maxBytes_;
  std::vector<unsigned char> bytes_;
  std::size_t mostBytes_ = 0;
  Losses losses_;
  bool hasLosses_ = false;
};

}  // namespace store
