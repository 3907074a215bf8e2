#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchRun.h"
#include "support/Connection.h"
#include "support/LogText.h"

// The rows of a query of all that a bench's MetadataMgr recorded, file by file.
inline Lines Recorded(const BenchRun& bench, const std::string& sql) {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(bench.Path("mnt/metadata"))) {
    if (entry.path().extension() == ".db") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::string rows;
  for (const std::string& path : paths) rows += Connection(path).Rows(sql);
  return LinesOf(rows);
}
