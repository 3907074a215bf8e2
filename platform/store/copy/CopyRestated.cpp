#include <algorithm>
#include <limits>
#include <map>

#include "CopyStatements.h"
#include "CopyWriter.h"
#include "Tables.h"

namespace store {
namespace {

constexpr std::size_t kMaxSources = 64;  // per table, as in the full state

}  // namespace

// Restated records get the sequence numbers just before the range. They are free: the originals are not
// copied.
SqliteCode CopyWriter::RestateBegin() {
  Picks picks;
  SqliteCode code = PickEach(kClockTable, SelectLast(kClockTable), range_.from, picks);
  const auto clocks = static_cast<std::ptrdiff_t>(picks.size());
  for (const Table& table : kTables) {
    if (!Ok(code)) break;
    if (table.keyColumns == 0) code = PickEach(table.id, SelectLast(table.id), range_.from, picks);
    if (table.keyColumns == 1) code = PickSources(table.id, picks);
  }
  std::int64_t lastBefore = 0;
  if (Ok(code)) code = LastSeqBefore(lastBefore);
  if (!Ok(code)) return code;
  std::sort(picks.begin() + clocks, picks.end(), [](const Pick& a, const Pick& b) { return a.seq < b.seq; });
  return RestateAll(picks, lastBefore - static_cast<std::int64_t>(picks.size()) + 1, range_.from);
}

SqliteCode CopyWriter::RestateLater() {
  Picks picks;
  SqliteCode code = PickEach(kClockTable, SelectFirstGps(), range_.to, picks);
  if (Ok(code) && picks.empty()) code = PickEach(kClockTable, SelectFirstTrusted(), range_.to, picks);
  if (Ok(code)) code = PickEach(kLossTable, SelectLosses(), range_.to, picks);
  for (const TableId fact : kFacts) {
    if (Ok(code)) code = PickEach(fact, SelectFacts(fact), range_.to, picks);
  }
  std::int64_t lastSeq = 0;
  if (Ok(code)) code = LastSeq(lastSeq);
  return Ok(code) ? RestateAll(picks, lastSeq + 1, range_.to) : code;
}

// The last record of each source.
SqliteCode CopyWriter::PickSources(TableId table, Picks& picks) {
  Statement select;
  if (const SqliteCode code = select.Prepare(database_.Handle(), SelectSources(table)); !Ok(code))
    return code;
  select.Bind(1, range_.from);
  select.Bind(3, lowestSeq_);
  select.Bind(4, highestSeq_);
  std::map<std::string, std::int64_t> lastOfEach;
  SqliteCode code = SqliteCode::kOk;
  while ((code = select.Step()) == SqliteCode::kRow) {
    const std::string source(select.Text(1));
    const auto known = lastOfEach.find(source);
    if (known != lastOfEach.end()) {
      known->second = select.Integer(0);
    } else if (lastOfEach.size() < kMaxSources) {
      lastOfEach.emplace(source, select.Integer(0));
    }
  }
  for (const auto& [source, seq] : lastOfEach) picks.push_back({table, seq});
  return code == SqliteCode::kDone ? SqliteCode::kOk : code;
}

SqliteCode CopyWriter::PickEach(TableId table, const std::string& select, std::int64_t tick, Picks& picks) {
  Statement statement;
  if (const SqliteCode code = statement.Prepare(database_.Handle(), select); !Ok(code)) return code;
  statement.Bind(1, tick);
  statement.Bind(2, range_.from);
  // The full state holds no clock rows. There are few, so all are searched.
  statement.Bind(3, table == kClockTable ? std::numeric_limits<std::int64_t>::min() : lowestSeq_);
  statement.Bind(4, highestSeq_);
  SqliteCode code = SqliteCode::kOk;
  while ((code = statement.Step()) == SqliteCode::kRow) picks.push_back({table, statement.Integer(0)});
  return code == SqliteCode::kDone ? SqliteCode::kOk : code;
}

SqliteCode CopyWriter::LastSeqBefore(std::int64_t& seq) {
  Picks lasts;
  for (const Table& table : kTables) {
    if (const SqliteCode code = PickEach(table.id, SelectLast(table.id), range_.from, lasts); !Ok(code))
      return code;
  }
  for (const Pick& last : lasts) seq = std::max(seq, last.seq);
  return SqliteCode::kOk;
}

SqliteCode CopyWriter::RestateAll(const Picks& picks, std::int64_t firstSeq, std::int64_t tick) {
  std::int64_t seq = firstSeq;
  for (const Pick& pick : picks) {
    if (const SqliteCode code = Run(Restate(pick.table), {pick.seq, seq++, tick}); !Ok(code)) return code;
  }
  return SqliteCode::kOk;
}

}  // namespace store
