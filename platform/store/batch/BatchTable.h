#pragma once

#include <array>
#include <vector>

#include "Batch.h"
#include "SqliteCode.h"

namespace store {

// Offers the records of a batch to SQL as a table named "batch". One statement then inserts all records of
// one table, in little more than half the time of one statement for each record. The columns are those that
// every table has, then c0, c1 ... for the table's own.
class BatchTable {
 public:
  BatchTable() = default;
  BatchTable(const BatchTable&) = delete;  // SQLite holds its address
  BatchTable& operator=(const BatchTable&) = delete;

  // Registers the table with a connection, which must not outlive this object.
  SqliteCode Register(sqlite3* database);

  // Takes the records that begin within the first `maxBytes` of the batch. Returns the header of the last
  // one. The batch must not be empty, and must not change until the rows have been read.
  RecordHeader Take(const Batch& batch, std::size_t maxBytes);

  // From now on statements see the records of this table only. False if there are none.
  bool Select(TableId table);

 private:
  friend class BatchCursor;

  const Batch* batch_ = nullptr;
  std::vector<std::size_t> offsets_;             // of the records taken, grouped by table, in order
  std::array<std::size_t, kTableCount> ends_{};  // end of each table's group in offsets_
  std::size_t begin_ = 0;                        // first row selected
  std::size_t end_ = 0;
};

}  // namespace store
