#pragma once

#include <string>

#include "support/Connection.h"
#include "support/TempDir.h"

// Makes a recording of schema 1 of the empty file at this path, from the golden one's text (SCHEMA1); what
// went wrong.
inline std::string WriteSchema1(const std::string& path) {
  const std::string sql = TextOfFile(SCHEMA1);
  return sql.empty() ? "no " SCHEMA1 : Connection(path).Rows(sql);
}
