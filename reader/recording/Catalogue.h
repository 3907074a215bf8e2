#pragma once

#include <string>
#include <vector>

#include "Table.h"

namespace reader {

class Connection;

// Which tables of records a recording file has. What a known table means stands in the store's format; a
// table that the format does not know is shown column by column. Names come from the file: they are
// quoted before they become SQL, and made printable before they are shown.

struct RecordColumn {
  std::string name;
  bool isText = false;
};

// One table of records: what follows its sequence number, ticks and event.
struct RecordTable {
  std::string name;
  std::vector<RecordColumn> columns;
  // What the format says of it; null for a table that it does not know.
  const store::Table* known = nullptr;

  // Whether the first column tells one source from another.
  bool IsNumbered() const { return known != nullptr && known->HasNumberedSources(); }
};

// Under which name a row has the table's column number `column`: the column's own, with the table
// before it where it would be one of every row ("speed_source").
std::string FieldName(const RecordTable& table, std::size_t column);

struct Catalogue {
  int schemaVersion = 0;
  std::vector<RecordTable> tables;

  const RecordTable* Find(const std::string& table) const;
};

// False when the file's schema cannot be read.
bool ReadCatalogue(Connection& connection, Catalogue& catalogue);

// The schema that the store makes today.
const Catalogue& CurrentCatalogue();

// What a file lacks of the current schema, and what it has beside it: "no table loss", "no column
// gps.valid", "unknown table x". Empty when they are the same.
std::vector<std::string> Differences(const Catalogue& catalogue);

}  // namespace reader
