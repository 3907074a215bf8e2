#include "LogFlood.h"

#include <algorithm>
#include <functional>
#include <string_view>

bool LogFlood::Admits(const char* name, unsigned int line) {
  Row& row = rows_[(std::hash<std::string_view>()(name) + line) % rows_.size()];
  const Clock::time_point now = Clock::now();
  const std::chrono::duration<double> passed = now - row.at;
  row.left = std::min(row.left + passed.count() * kPerSecond, kBurst);
  row.at = now;
  if (row.left < 1) return false;
  row.left -= 1;
  return true;
}
