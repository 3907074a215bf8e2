#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "Row.h"

namespace store {

// A record inside a batch; valid until the batch changes.
struct RecordView {
  RecordHeader header;
  const unsigned char* cells = nullptr;  // header.cellBytes bytes
};

// Cells are the values of a record in column order. An integer takes 8 bytes; a text takes 4 bytes of length,
// then its bytes. They are in native byte order, because they never leave memory. Each call reads one cell
// and moves to the next.
std::int64_t TakeInteger(const unsigned char*& cell);
std::string_view TakeText(const unsigned char*& cell);
// Bytes of the first `columns` cells of a record.
std::size_t CellBytes(TableId table, int columns, const unsigned char* cells);

struct Loss {
  std::int64_t count = 0;
  std::int64_t fromTick = 0;
  std::int64_t toTick = 0;
};
using Losses = std::array<Loss, kTableCount>;

// Records that wait to be written, in the order of their sequence numbers, in one flat buffer. The buffer
// never shrinks, so adding allocates nothing once it is large enough.
class Batch {
 public:
  explicit Batch(std::size_t maxBytes) : maxBytes_(maxBytes) {}

  // Adds a record and cuts its texts to 1024 bytes. Beyond the bound it drops the oldest records, critical
  // ones last, and counts them as losses. Sets the header's table and cellBytes. Returns the cells; valid
  // until the batch changes.
  const unsigned char* Add(RecordHeader& header, const RowView& row);

  // The same for the cells of a record outside this batch.
  void AddCells(const RecordHeader& header, const unsigned char* cells);

  bool Empty() const { return bytes_.empty(); }
  std::size_t Bytes() const { return bytes_.size(); }
  RecordHeader First() const;  // the batch must not be empty
  std::int64_t Count() const;

  // Reads the record at the offset and moves the offset to the next one; false at the end.
  bool Next(std::size_t& offset, RecordView& record) const;

  // Removes the records up to and including this sequence number.
  void RemoveUpTo(std::int64_t seq);
  void Clear() { bytes_.clear(); }

  // The highest number of bytes so far.
  std::size_t MostBytes() const { return mostBytes_; }

  // Losses since the last call.
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
