#include "Catalogue.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Schema.h"
#include "Sqlite.h"
#include "Tables.h"

namespace reader {
namespace {

constexpr std::array kHeader{"seq", "tick", "sender_tick", "event"};

// A recording has some dozens of tables; a hostile file may have any number.
constexpr std::size_t kMostTables = 200;
constexpr std::size_t kMostColumns = 200;

// Field names that every row has.
constexpr std::array kRowNames{"run",      "seq",   "tick",   "sender_tick", "utc",
                               "utc_from", "event", "source", "table"};

const store::Table* FindKnown(std::string_view name) {
  const auto* found = std::find_if(store::kTables.begin(), store::kTables.end(),
                                   [name](const store::Table& table) { return name == table.name; });
  return found == store::kTables.end() ? nullptr : found;
}

// A table with numbered sources whose first column is not the source number counts as unknown.
void TakeMeaning(RecordTable& table) {
  table.known = FindKnown(table.name);
  if (!table.IsNumbered()) return;
  const bool hasKey = !table.columns.empty() && !table.columns.front().isText &&
                      table.columns.front().name == table.known->columns.front().name;
  if (!hasKey) table.known = nullptr;
}

// Returns false if the table does not hold records.
bool ReadTable(Connection& connection, RecordTable& table) {
  Statement columns;
  if (!Ok(columns.Prepare(connection.Handle(), "SELECT name, type FROM pragma_table_info(?1) ORDER BY cid")))
    return false;
  columns.Bind(1, table.name);
  std::size_t header = 0;
  while (columns.Step() == SqliteCode::kRow && table.columns.size() < kMostColumns) {
    const std::string_view name = columns.Text(0);
    if (header < kHeader.size()) {
      if (name != kHeader[header]) return false;
      ++header;
    } else {
      table.columns.push_back({std::string(name), columns.Text(1) == "TEXT"});
    }
  }
  if (header < kHeader.size()) return false;
  TakeMeaning(table);
  return true;
}

bool HasColumn(const RecordTable& table, const std::string& name) {
  return std::any_of(table.columns.begin(), table.columns.end(),
                     [&name](const RecordColumn& column) { return column.name == name; });
}

// Appends the tables and columns that `one` has and `other` lacks.
void AppendMissing(const Catalogue& one, const Catalogue& other, const char* how,
                   std::vector<std::string>& differences) {
  for (const RecordTable& table : one.tables) {
    const RecordTable* there = other.Find(table.name);
    if (there == nullptr) {
      differences.push_back(std::string(how) + " table " + table.name);
      continue;
    }
    for (const RecordColumn& column : table.columns) {
      if (HasColumn(*there, column.name)) continue;
      differences.push_back(std::string(how) + " column " + table.name + "." + column.name);
    }
  }
}

}  // namespace

std::string FieldName(const RecordTable& table, std::size_t column) {
  const std::string& name = table.columns[column].name;
  const bool taken = std::find(kRowNames.begin(), kRowNames.end(), name) != kRowNames.end();
  return taken ? table.name + "_" + name : name;
}

const RecordTable* Catalogue::Find(const std::string& table) const {
  const auto found = std::find_if(tables.begin(), tables.end(),
                                  [&table](const RecordTable& row) { return row.name == table; });
  return found == tables.end() ? nullptr : &*found;
}

// Skips virtual tables (root page 0): reading one would run its module's code.
bool ReadCatalogue(Connection& connection, Catalogue& catalogue) {
  Statement names;
  const std::string sql =
      "SELECT name FROM main.sqlite_master WHERE type='table' AND rootpage>0 ORDER BY rowid LIMIT " +
      std::to_string(kMostTables);
  if (!Ok(names.Prepare(connection.Handle(), sql))) return false;
  catalogue.schemaVersion = static_cast<int>(connection.Integer("PRAGMA user_version", 0));
  SqliteCode step = names.Step();
  for (; step == SqliteCode::kRow; step = names.Step()) {
    RecordTable table;
    table.name = names.Text(0);
    if (ReadTable(connection, table)) catalogue.tables.push_back(table);
  }
  return step == SqliteCode::kDone;
}

const Catalogue& CurrentCatalogue() {
  static const Catalogue current = [] {
    Catalogue catalogue;
    catalogue.schemaVersion = store::kSchemaVersion;
    for (const store::Table& known : store::kTables) {
      RecordTable& table = catalogue.tables.emplace_back();
      table.name = known.name;
      for (std::size_t i = 0; i < known.ColumnCount(); ++i) {
        const store::Column& column = known.columns[i];
        table.columns.push_back({column.name, column.type == store::ColumnType::kText});
      }
      TakeMeaning(table);
    }
    return catalogue;
  }();
  return current;
}

std::vector<std::string> Differences(const Catalogue& catalogue) {
  std::vector<std::string> differences;
  AppendMissing(CurrentCatalogue(), catalogue, "no", differences);
  AppendMissing(catalogue, CurrentCatalogue(), "unknown", differences);
  return differences;
}

}  // namespace reader
