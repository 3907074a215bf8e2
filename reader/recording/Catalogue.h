#pragma once

#include <string>
#include <vector>

#include "Sqlite.h"

// What a recording file says about its own tables. Nothing is taken for granted, so files with another
// schema are read too.

struct RecordColumn {
  std::string name;
  bool isText = false;
};

// One table of records: what follows its sequence number, ticks and event.
struct RecordTable {
  std::string name;
  std::vector<RecordColumn> columns;
  bool numbered = false;  // the first column tells one source from another
  // SQL over the columns, as the file's views have it; empty where the file does not say.
  std::string sourceSql;
  std::string textSql;
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

// What a file has not that the current schema has, and the other way round: "no table loss", "no
// column gps.valid", "unknown table x". Empty when they are the same.
std::vector<std::string> Differences(const Catalogue& catalogue);
