#include "LogFlood.h"

#include <algorithm>
#include <functional>

#include "os/MonotonicClock.h"

LogFlood::Row& LogFlood::RowOf(const LogStatement& statement) {
  const std::hash<const void*> hash;
  const std::size_t start = hash(statement.file) + statement.line * std::size_t{31} + hash(statement.subject);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    Row& row = rows_[(start + i) % rows_.size()];
    if (row.statement.file == nullptr) row.statement = statement;
    if (row.statement == statement) return row;
  }
  return others_;
}

bool LogFlood::Admits(const LogStatement& statement) {
  Row& row = RowOf(statement);
  const std::int64_t nowMs = os::MonotonicMs();
  row.left = std::min(row.left + static_cast<double>(nowMs - row.atMs) / 1000 * kPerSecond, kBurst);
  row.atMs = nowMs;
  if (row.left < 1) return false;
  row.left -= 1;
  return true;
}
