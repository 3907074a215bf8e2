#pragma once

#include <string>

#include "support/Connection.h"
#include "support/TempDir.h"

// Fills the empty file at this path with the golden recording of schema 1 (SCHEMA1). Returns an error text;
// empty: none.
inline std::string WriteSchema1(const std::string& path) {
  const std::string sql = TextOfFile(SCHEMA1);
  return sql.empty() ? "no " SCHEMA1 : Connection(path).Rows(sql);
}
