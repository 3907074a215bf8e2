#include "BareInsert.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "Measure.h"

namespace {

constexpr std::size_t kTransaction = 4000;

struct Close {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  void operator()(sqlite3_value* value) const { sqlite3_value_free(value); }
};
using Database = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Close>;
using Value = std::unique_ptr<sqlite3_value, Close>;

Database Open(const std::string& path) {
  sqlite3* database = nullptr;
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(path.c_str(), &database, kFlags, nullptr) != SQLITE_OK) Fail("open");
  return Database(database);
}

Statement Prepare(const Database& database, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    Fail(sql.c_str());
  }
  return Statement(statement);
}

void Run(const Database& database, const std::string& sql) {
  if (sqlite3_exec(database.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sql.c_str());
}

std::string Text(const Statement& statement, int column) {
  return reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), column));
}

struct Row {
  std::int64_t seq;
  sqlite3_stmt* insert;
  std::vector<Value> values;
};

struct Work {
  Database database;
  std::vector<Statement> inserts;
  std::vector<Row> rows;
};

void Load(const Database& from, const std::string& table, Work& work) {
  const Statement select = Prepare(from, "SELECT * FROM " + table);
  const int columns = sqlite3_column_count(select.get());
  std::string insert = "INSERT INTO " + table + " VALUES(?";
  for (int i = 1; i < columns; ++i) insert += ",?";
  work.inserts.push_back(Prepare(work.database, insert + ")"));
  while (sqlite3_step(select.get()) == SQLITE_ROW) {
    Row row{sqlite3_column_int64(select.get(), 0), work.inserts.back().get(), {}};
    for (int i = 0; i < columns; ++i) {
      row.values.emplace_back(sqlite3_value_dup(sqlite3_column_value(select.get(), i)));
    }
    work.rows.push_back(std::move(row));
  }
}

void Insert(const Row& row) {
  int column = 0;
  for (const Value& value : row.values) sqlite3_bind_value(row.insert, ++column, value.get());
  if (sqlite3_step(row.insert) != SQLITE_DONE) Fail("insert");
  sqlite3_reset(row.insert);
}

}  // namespace

Recorded CountRecords(const std::string& recording) {
  const Database database = Open(recording);
  const Statement count = Prepare(database, "SELECT count(*), sum(event=1), max(seq)-min(seq)+1 FROM record");
  if (sqlite3_step(count.get()) != SQLITE_ROW) Fail("count");
  return {sqlite3_column_int64(count.get(), 0), sqlite3_column_int64(count.get(), 1),
          sqlite3_column_int64(count.get(), 2)};
}

double InsertBare(const std::string& recording, const std::string& path) {
  const Database from = Open(recording);
  Work work{Open(path), {}, {}};
  Run(work.database,
      "PRAGMA page_size=1024; PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA cache_size=-512");
  const Statement tables = Prepare(
      from,
      "SELECT name, sql FROM sqlite_schema WHERE type='table' AND sql LIKE '%seq INTEGER PRIMARY KEY%'");
  while (sqlite3_step(tables.get()) == SQLITE_ROW) {
    Run(work.database, Text(tables, 1));
    Load(from, Text(tables, 0), work);
  }
  std::sort(work.rows.begin(), work.rows.end(), [](const Row& a, const Row& b) { return a.seq < b.seq; });
  const double begin = ThreadSeconds();
  for (std::size_t i = 0; i < work.rows.size(); ++i) {
    if (i % kTransaction == 0) Run(work.database, i == 0 ? "BEGIN IMMEDIATE" : "COMMIT; BEGIN IMMEDIATE");
    Insert(work.rows[i]);
  }
  Run(work.database, "COMMIT");
  return ThreadSeconds() - begin;
}
