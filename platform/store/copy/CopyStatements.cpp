#include "CopyStatements.h"

#include "RecordTime.h"
#include "Tables.h"

namespace store {
namespace {

// With "*" SQLite copies whole rows without decoding them.
std::string InsertFrom(TableId table, const std::string& columns) {
  const std::string name = kTables[table].name;
  return "INSERT INTO main." + name + " SELECT " + columns + " FROM source." + name;
}

std::string SelectFrom(TableId table, const std::string& rest) {
  return std::string("SELECT seq FROM source.") + kTables[table].name + rest;
}

std::string UnlessThere(const std::string& what) {
  return " AND NOT EXISTS(SELECT 1 FROM main." + what + ")";
}

std::string SelectFirstAnchor(const std::string& condition) {
  return SelectFrom(kClockTable, " WHERE tick>?1 AND " + condition + UnlessThere("clock WHERE " + condition) +
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
  return InsertFrom(table, "*") + " WHERE tick BETWEEN ?1 AND ?2 AND seq BETWEEN ?3 AND ?4";
}

std::string SelectFullStatesBefore() {
  return "SELECT seq, last_seq FROM source.full_state WHERE tick<?1 ORDER BY seq DESC LIMIT 4";
}

std::string SelectFullStateAfter() {
  return "SELECT seq FROM source.full_state WHERE tick>?1 ORDER BY seq LIMIT 1";
}

std::string CountRecords() {
  std::string sql = "SELECT 0";
  for (const Table& table : kTables) {
    sql += std::string("+(SELECT count(*) FROM source.") + table.name + " WHERE seq BETWEEN ?1 AND ?2)";
  }
  return sql;
}

std::string SelectLast(TableId table) {
  return SelectFrom(table, " WHERE tick<?1 AND seq BETWEEN ?3 AND ?4 ORDER BY seq DESC LIMIT 1");
}

std::string SelectSources(TableId table) {
  return std::string("SELECT seq, ") + kTables[table].columns[0].name + " FROM source." +
         kTables[table].name + " WHERE tick<?1 AND seq BETWEEN ?3 AND ?4 ORDER BY seq";
}

std::string SelectFacts(TableId table) {
  return SelectFrom(table, " WHERE tick>?1 AND event<2" + UnlessThere(kTables[table].name) + " ORDER BY seq");
}

std::string SelectFirstGps() {
  return SelectFirstAnchor("clock_source='gps'");
}

std::string SelectFirstTrusted() {
  return SelectFirstAnchor("utc_ms>=" + std::to_string(kFirstTrustedUtcMs));
}

std::string SelectLosses() {
  return SelectFrom(kLossTable, " WHERE tick>?1 AND from_tick<=?1 AND to_tick>=?2 ORDER BY seq");
}

// A restated row of clock gets the UTC of its new tick.
std::string Restate(TableId table) {
  std::string columns = "?2, ?3, sender_tick, 2";
  for (std::size_t i = 0; i < kTables[table].ColumnCount(); ++i) {
    const std::string name = kTables[table].columns[i].name;
    columns += ", " + name;
    if (table == kClockTable && name.ends_with("utc_ms")) columns += "+?3-tick";
  }
  return InsertFrom(table, columns) + " WHERE seq=?1";
}

}  // namespace store
