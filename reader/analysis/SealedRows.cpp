#include "SealedRows.h"

#include <limits>
#include <utility>

namespace reader {

bool SealedRows::Open(Connection& connection) {
  seqs_.fill(std::numeric_limits<std::int64_t>::min());
  for (const store::Table& table : store::kTables) {
    const std::string sql = std::string("SELECT * FROM main.") + table.name + " ORDER BY seq";
    if (!Ok(rows_[table.id].Prepare(connection.Handle(), sql))) return Fail(table.id, connection.Error());
    heap_.push_back(table.id);
    if (!Step(table.id)) return false;
  }
  for (std::size_t i = heap_.size(); i-- > 0;) SiftDown(i);
  return true;
}

// Moves the last table of the heap, or its first one once the heap is in order, to its next row.
bool SealedRows::Step(std::size_t table) {
  const SqliteCode code = rows_[table].Step();
  if (code == SqliteCode::kDone) {
    if (heap_.front() == table) heap_.front() = heap_.back();
    heap_.pop_back();
    return true;
  }
  if (code != SqliteCode::kRow) return Fail(table, ErrorText(code));
  const std::int64_t seq = rows_[table].Integer(0);
  if (seq <= seqs_[table]) return Fail(table, "its rows are not in order");
  seqs_[table] = seq;
  return true;
}

bool SealedRows::Take(seal::CommitHash& hash) {
  const std::size_t table = heap_.front();
  const int columns = static_cast<int>(4 + store::kTables[table].ColumnCount());
  hash.BeginRow(store::kTables[table].name, static_cast<std::size_t>(columns));
  for (int column = 0; column < columns; ++column) {
    if (!AddValue(table, column, hash)) return Fail(table, "a value has a foreign type");
  }
  if (!Step(table)) return false;
  SiftDown(0);
  return true;
}

bool SealedRows::AddValue(std::size_t table, int column, seal::CommitHash& hash) {
  switch (rows_[table].Type(column)) {
    case SQLITE_NULL:
      hash.AddNull();
      return true;
    case SQLITE_INTEGER:
      hash.Add(rows_[table].Integer(column));
      return true;
    case SQLITE_TEXT:
      hash.Add(rows_[table].Text(column));
      return true;
    default:
      return false;
  }
}

void SealedRows::SiftDown(std::size_t at) {
  for (;;) {
    std::size_t lowest = at;
    for (const std::size_t child : {2 * at + 1, 2 * at + 2}) {
      if (child < heap_.size() && seqs_[heap_[child]] < seqs_[heap_[lowest]]) lowest = child;
    }
    if (lowest == at) return;
    std::swap(heap_[at], heap_[lowest]);
    at = lowest;
  }
}

bool SealedRows::Fail(std::size_t table, const std::string& why) {
  fault_ = std::string("table ") + store::kTables[table].name + " cannot be read: " + why;
  return false;
}

}  // namespace reader
