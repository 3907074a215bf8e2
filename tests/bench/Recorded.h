#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchRun.h"

using Rows = std::vector<std::string>;

// The first column of a query of all that a bench's MetadataMgr recorded, file by file.
inline Rows Recorded(const BenchRun& bench, const std::string& sql) {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(bench.Path("mnt/metadata"))) {
    if (entry.path().extension() == ".db") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  Rows rows;
  for (const std::string& path : paths) {
    sqlite3* file = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &file, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    const auto add = [](void* context, int, char** values, char**) {
      static_cast<Rows*>(context)->emplace_back(values[0]);
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(file, sql.c_str(), add, &rows, nullptr), SQLITE_OK) << sqlite3_errmsg(file);
    sqlite3_close(file);
  }
  return rows;
}
