#pragma once

#include <array>
#include <vector>

#include "Batch.h"
#include "SqliteCode.h"

namespace store {

// Records of a batch as a table named "batch" that SQL can read: one statement then inserts all those of
// one table, in little more than half the time that one statement for each takes. Its columns are those
// that every table has, then c0, c1 ... for the table's own.
class BatchTable {
 public:
  BatchTable() = default;
  BatchTable(const BatchTable&) = delete;  // SQLite knows its address
  BatchTable& operator=(const BatchTable&) = delete;

  // Makes the table known to a connection, which must not outlive this object.
  SqliteCode Register(sqlite3* database);

  // Takes records from the beginning of the batch, as many as begin within `maxBytes`, and returns the
  // header of the last. The batch must not be empty, nor change until their rows have been read.
  RecordHeader Take(const Batch& batch, std::size_t maxBytes);

  // The rows of statements that run from now on are the records of this table; false: there are none.
  bool Select(TableId table);

 private:
  friend class BatchCursor;

  const Batch* batch_ = nullptr;
  std::vector<std::size_t> offsets_;             // of the records taken: table by table, each in order
  std::array<std::size_t, kTableCount> ends_{};  // of each table in offsets_
  std::size_t begin_ = 0;                        // of the rows selected
  std::size_t end_ = 0;
};

}  // namespace store
