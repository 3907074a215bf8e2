#pragma once

#include <string>
#include <vector>

#include "Table.h"

namespace reader {

class Connection;

// The record tables of a recording file. The store's format describes the known tables; unknown tables are
// shown column by column. Names come from the file, so they are quoted in SQL and made printable before they
// are shown.

struct RecordColumn {
  std::string name;
  bool isText = false;
};

// One record table. `columns` are those after sequence number, ticks and event.
struct RecordTable {
  std::string name;
  std::vector<RecordColumn> columns;
  // The table's description in the format; null for an unknown table.
  const store::Table* known = nullptr;

  // Whether the first column is the number of the source.
  bool IsNumbered() const { return known != nullptr && known->HasNumberedSources(); }
};

// The field name of a column: the column's name, prefixed with the table where every row already has a field
// of that name ("speed_source").
std::string FieldName(const RecordTable& table, std::size_t column);

struct Catalogue {
  int schemaVersion = 0;
  std::vector<RecordTable> tables;

  const RecordTable* Find(const std::string& table) const;
};

// Returns false if the file's schema cannot be read.
bool ReadCatalogue(Connection& connection, Catalogue& catalogue);

// The schema that the store writes now.
const Catalogue& CurrentCatalogue();

// Differences from the current schema: "no table loss", "no column gps.valid", "unknown table x". Empty if
// there are none.
std::vector<std::string> Differences(const Catalogue& catalogue);

}  // namespace reader
