#pragma once

#include <array>

#include "Record.h"

namespace store {

enum class ColumnType : unsigned char { kInteger, kText };

struct Column {
  const char* name = nullptr;
  ColumnType type = ColumnType::kInteger;
};

constexpr int kNoState = -1;

// Everything about one kind of record. CREATE TABLE, INSERT, the timeline view and the full state are
// made from it.
struct Table {
  TableId id;
  const char* name;
  // How many of the first columns tell one source from another; the full state holds the last
  // record of each. kNoState: the table has no part in the full state.
  int keyColumns;
  // SQL over the columns: what the timeline shows as source and as text.
  const char* source;
  const char* text;
  std::array<Column, 14> columns;  // ends at the first without a name

  constexpr int ColumnCount() const {
    int count = 0;
    for (const Column& column : columns) count += column.name != nullptr ? 1 : 0;
    return count;
  }
};

extern const std::array<Table, kTableCount> kTables;  // in the order of TableId

}  // namespace store
