#include <algorithm>
#include <map>

#include "CopyStatements.h"
#include "CopyWriter.h"
#include "Tables.h"

namespace store {
namespace {

constexpr std::size_t kMaxSources = 64;  // of a table, as in the full state

}  // namespace

// Each has a number of its own before the range, so there is room for all of them.
int CopyWriter::RestateBegin() {
  Picks picks;
  int rc = PickEach(kClockTable, SelectLast(kClockTable), range_.from, picks);
  for (const Table& table : kTables) {
    if (rc != SQLITE_OK) break;
    if (table.keyColumns == 0) rc = PickEach(table.id, SelectLast(table.id), range_.from, picks);
    if (table.keyColumns == 1) rc = PickSources(table.id, picks);
  }
  std::int64_t lastBefore = 0;
  if (rc == SQLITE_OK) rc = LastSeqBefore(lastBefore);
  if (rc != SQLITE_OK) return rc;
  return RestateAll(picks, lastBefore - static_cast<std::int64_t>(picks.size()) + 1, range_.from);
}

int CopyWriter::RestateLater() {
  Picks picks;
  int rc = PickEach(kClockTable, SelectFirstGps(), range_.to, picks);
  if (rc == SQLITE_OK && picks.empty()) rc = PickEach(kClockTable, SelectFirstTrusted(), range_.to, picks);
  if (rc == SQLITE_OK) rc = PickEach(kLossTable, SelectLosses(), range_.to, picks);
  for (const TableId fact : kFacts) {
    if (rc == SQLITE_OK) rc = PickEach(fact, SelectFacts(fact), range_.to, picks);
  }
  std::int64_t lastSeq = 0;
  if (rc == SQLITE_OK) rc = LastSeq(lastSeq);
  return rc == SQLITE_OK ? RestateAll(picks, lastSeq + 1, range_.to) : rc;
}

// The last record of each source, in their order.
int CopyWriter::PickSources(TableId table, Picks& picks) {
  Statement select;
  if (const int rc = select.Prepare(database_.Handle(), SelectSources(table)); rc != SQLITE_OK) return rc;
  select.Bind(1, range_.from);
  std::map<std::string, std::int64_t> lastOfEach;
  int rc = SQLITE_OK;
  while ((rc = select.Step()) == SQLITE_ROW) {
    const std::string source = select.Text(1);
    const auto known = lastOfEach.find(source);
    if (known != lastOfEach.end()) {
      known->second = select.Integer(0);
    } else if (lastOfEach.size() < kMaxSources) {
      lastOfEach.emplace(source, select.Integer(0));
    }
  }
  const auto first = static_cast<std::ptrdiff_t>(picks.size());
  for (const auto& [source, seq] : lastOfEach) picks.push_back({table, seq});
  std::sort(picks.begin() + first, picks.end(), [](const Pick& a, const Pick& b) { return a.seq < b.seq; });
  return rc == SQLITE_DONE ? SQLITE_OK : rc;
}

int CopyWriter::PickEach(TableId table, const std::string& select, std::int64_t tick, Picks& picks) {
  Statement statement;
  if (const int rc = statement.Prepare(database_.Handle(), select); rc != SQLITE_OK) return rc;
  statement.Bind(1, tick);
  statement.Bind(2, range_.from);
  int rc = SQLITE_OK;
  while ((rc = statement.Step()) == SQLITE_ROW) picks.push_back({table, statement.Integer(0)});
  return rc == SQLITE_DONE ? SQLITE_OK : rc;
}

int CopyWriter::LastSeqBefore(std::int64_t& seq) {
  Picks lasts;
  for (const Table& table : kTables) {
    if (const int rc = PickEach(table.id, SelectLast(table.id), range_.from, lasts); rc != SQLITE_OK)
      return rc;
  }
  for (const Pick& last : lasts) seq = std::max(seq, last.seq);
  return SQLITE_OK;
}

int CopyWriter::RestateAll(const Picks& picks, std::int64_t firstSeq, std::int64_t tick) {
  std::int64_t seq = firstSeq;
  for (const Pick& pick : picks) {
    if (const int rc = Run(Restate(pick.table), {pick.seq, seq++, tick}); rc != SQLITE_OK) return rc;
  }
  return SQLITE_OK;
}

}  // namespace store
