#include "CopyStatements.h"

#include "Schema.h"
#include "Tables.h"

namespace store {
namespace {

// With everything in place, SQLite copies whole rows without looking into them.
std::string InsertFrom(TableId table, const std::string& columns) {
  const std::string name = kTables[table].name;
  return "INSERT INTO main." + name + " SELECT " + columns + " FROM source." + name;
}

// UTC goes with the ticks.
std::string Restated(TableId table, const std::string& rest) {
  std::string columns = "seq, ?1, sender_tick, " + std::to_string(static_cast<int>(Event::kRestated));
  for (int i = 0; i < kTables[table].ColumnCount(); ++i) {
    const std::string name = kTables[table].columns[static_cast<std::size_t>(i)].name;
    columns += ", " + name;
    if (name.ends_with("utc_ms") && table == kClockTable) columns += "+?1-tick";
  }
  return InsertFrom(table, columns) + rest;
}

std::string UnlessThere(const std::string& what) {
  return " AND NOT EXISTS(SELECT 1 FROM main." + what + ")";
}

std::string RestateFirstAnchor(const std::string& condition) {
  return Restated(kClockTable, " WHERE tick>?1 AND " + condition + UnlessThere("clock WHERE " + condition) +
                                   " ORDER BY seq LIMIT 1");
}

}  // namespace

std::string CountDifferences() {
  const std::string select = "SELECT type, name, sql FROM ";
  return "SELECT count(*) FROM (" + select + "main.sqlite_master EXCEPT " + select + "source.sqlite_master)";
}

std::string CopyAll(TableId table) {
  return InsertFrom(table, "*");
}

std::string CopyBetween(TableId table) {
  return InsertFrom(table, "*") + " WHERE tick BETWEEN ?1 AND ?2";
}

std::string RestateLast(TableId table) {
  return Restated(table, " WHERE tick<?1 ORDER BY seq DESC LIMIT 1");
}

std::string SelectSources(TableId table) {
  return std::string("SELECT seq, ") + kTables[table].columns[0].name + " FROM source." +
         kTables[table].name + " WHERE tick<?1 ORDER BY seq";
}

std::string RestateOne(TableId table) {
  return Restated(table, " WHERE seq=?2");
}

std::string RestateFacts(TableId table) {
  return Restated(table, " WHERE tick>?1 AND event<" + std::to_string(static_cast<int>(Event::kRestated)) +
                             UnlessThere(kTables[table].name));
}

std::string RestateFirstGps() {
  return RestateFirstAnchor("clock_source='gps'");
}

std::string RestateFirstTrusted() {
  return RestateFirstAnchor(std::string("utc_ms>=") + kTrustedFromUtcMs);
}

std::string RestateLosses() {
  return Restated(kLossTable, " WHERE tick>?1 AND from_tick<=?1 AND to_tick>=?2");
}

}  // namespace store
