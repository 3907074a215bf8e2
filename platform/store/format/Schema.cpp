#include "Schema.h"

#include "RecordTime.h"
#include "Tables.h"
#include "Tags.h"

namespace store {
namespace {

std::string CreateTable(const Table& table) {
  std::string sql = std::string("CREATE TABLE ") + table.name +
                    "(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, "
                    "event INTEGER NOT NULL";
  for (std::size_t i = 0; i < table.ColumnCount(); ++i) {
    const Column& column = table.columns[i];
    sql += std::string(", ") + column.name + (column.type == ColumnType::kText ? " TEXT" : " INTEGER") +
           " NOT NULL";
  }
  return sql + ") STRICT;\n";
}

std::string CreateTagNames() {
  std::string sql =
      "CREATE TABLE tag_name(tag INTEGER PRIMARY KEY, name TEXT NOT NULL, active_text TEXT NOT NULL, "
      "inactive_text TEXT NOT NULL) STRICT;\n";
  for (const TagName& row : kTagNames) {
    sql += "INSERT INTO tag_name VALUES(" + std::to_string(row.tag) + ",'" + row.name + "','" + row.active +
           "','" + row.inactive + "');\n";
  }
  return sql;
}

// All records with the same columns. `shift` is sender tick minus arrival tick, corrected for the wrap.
std::string CreateRecordView() {
  std::string sql = "CREATE VIEW record AS\n";
  const char* separator = "";
  for (const Table& table : kTables) {
    sql += std::string(separator) + "SELECT seq, tick, sender_tick, event, " + SourceSql(table) +
           " AS source, " + table.text +
           " AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM " + table.name;
    separator = "\nUNION ALL ";
  }
  return sql + ";\n";
}

// The rules of RecordTime.h in SQL.
std::string CreateTimelineView() {
  return R"(
CREATE VIEW timeline AS
WITH shifted AS (
  SELECT seq, tick, sender_tick, event, source, text,
         iif(event<>2 AND sender_tick NOT IN (0,)" +
         std::to_string(kNoTick) + ") AND abs(shift)<=" + std::to_string(kNearMs) + R"(, shift, NULL) AS shift
  FROM record),
timed AS (
  SELECT *, tick + coalesce(shift,0) +
      (SELECT utc_ms-clock.tick FROM clock
       WHERE clock.seq<=max(shifted.seq, (SELECT coalesce(
           (SELECT min(seq) FROM clock WHERE clock_source='gps'),
           (SELECT min(seq) FROM clock WHERE utc_ms>=)" +
         std::to_string(kFirstTrustedUtcMs) + R"(),
           (SELECT min(seq) FROM clock))))
       ORDER BY clock.seq DESC LIMIT 1) AS utc_ms
  FROM shifted),
split AS (SELECT *, (utc_ms%1000+1000)%1000 AS ms FROM timed)
SELECT seq,
       strftime('%Y-%m-%dT%H:%M:%S', (utc_ms-ms)/1000, 'unixepoch') || printf('.%03dZ', ms) AS utc,
       iif(shift IS NULL,'arrival','sender') AS utc_from,
       tick, sender_tick, source,
       CASE event WHEN 0 THEN 'initial' WHEN 1 THEN 'event' ELSE 'restated' END AS event,
       text
FROM split ORDER BY seq;
)";
}

std::string SelectOneOfEach(const char* order) {
  std::string sql;
  const char* separator = "";
  for (const Table& table : kTables) {
    sql += std::string(separator) + "SELECT * FROM (SELECT seq, tick FROM " + table.name + " ORDER BY seq " +
           order + " LIMIT 1)";
    separator = " UNION ALL ";
  }
  return sql;
}

constexpr const char* kCreateOthers =
    "CREATE TABLE progress(last_seq INTEGER NOT NULL, last_tick INTEGER NOT NULL) STRICT;\n"
    "INSERT INTO progress VALUES(0,0);\n"
    "CREATE TABLE run(id BLOB NOT NULL) STRICT;\n"
    "CREATE TABLE seal(number INTEGER PRIMARY KEY, first_seq INTEGER NOT NULL, last_seq INTEGER NOT NULL, "
    "last_tick INTEGER NOT NULL, epoch INTEGER NOT NULL, hash BLOB NOT NULL, signature BLOB, note BLOB) "
    "STRICT;\n";

}  // namespace

std::string CreateSchema() {
  std::string sql = "BEGIN IMMEDIATE;\n";
  for (const Table& table : kTables) sql += CreateTable(table);
  return sql + CreateTagNames() + CreateRecordView() + CreateTimelineView() + kCreateOthers + "COMMIT;\n";
}

std::string CreateRecording(const RunId& run) {
  std::string sql = CreateSchema();
  return sql.insert(sql.rfind("COMMIT"), "INSERT INTO run VALUES(" + BlobSql(run) + ");\n");
}

std::string SelectFirstRecords() {
  return SelectOneOfEach("ASC");
}

std::string SelectLastRecords() {
  return SelectOneOfEach("DESC");
}

std::string InsertInto(TableId table) {
  std::string sql = std::string("INSERT INTO ") + kTables[table].name + " VALUES(?,?,?,?";
  for (std::size_t i = 0; i < kTables[table].ColumnCount(); ++i) sql += ",?";
  return sql + ")";
}

std::string InsertFromBatch(TableId table) {
  std::string sql =
      std::string("INSERT INTO ") + kTables[table].name + " SELECT seq, tick, sender_tick, event";
  for (std::size_t i = 0; i < kTables[table].ColumnCount(); ++i) sql += ", c" + std::to_string(i);
  return sql + " FROM batch";
}

}  // namespace store
