#include "Catalogue.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Schema.h"

namespace {

constexpr std::array kHeader{"seq", "tick", "sender_tick", "event"};

// Columns that count sources of one kind.
constexpr std::array kNumbers{"signal", "tag",    "source", "radar",    "mic",
                              "sensor", "camera", "stream", "component"};

// Names that stand for something else in every row.
constexpr std::array kRowNames{"run",      "seq",   "tick",   "sender_tick", "utc",
                               "utc_from", "event", "source", "table"};

bool ReadTable(Connection& connection, RecordTable& table) {
  Statement columns;
  if (columns.Prepare(connection.Handle(), "SELECT name, type FROM pragma_table_info('" + table.name +
                                               "') ORDER BY cid") != SQLITE_OK) {
    return false;
  }
  std::size_t header = 0;
  while (columns.Step() == SQLITE_ROW) {
    const std::string_view name = columns.Text(0);
    if (header < kHeader.size()) {
      if (name != kHeader[header]) return false;
      ++header;
    } else {
      table.columns.push_back({std::string(name), columns.Text(1) == "TEXT"});
    }
  }
  if (header < kHeader.size()) return false;
  if (table.columns.empty()) return true;
  const RecordColumn& first = table.columns.front();
  table.numbered = !first.isText && std::find(kNumbers.begin(), kNumbers.end(), first.name) != kNumbers.end();
  return true;
}

// One part of the view of all records: "SELECT seq, tick, sender_tick, event, SOURCE AS source, TEXT AS
// text, ... FROM TABLE".
void ReadViewPart(std::string_view part, Catalogue& catalogue) {
  constexpr std::string_view kEvent = " event, ";
  constexpr std::string_view kAsSource = " AS source, ";
  constexpr std::string_view kAsText = " AS text, ";
  constexpr std::string_view kFrom = " FROM ";
  const std::size_t source = part.find(kEvent);
  const std::size_t asSource = part.rfind(kAsSource);
  const std::size_t asText = part.rfind(kAsText);
  const std::size_t from = part.rfind(kFrom);
  if (source == std::string_view::npos || asSource == std::string_view::npos ||
      asText == std::string_view::npos || from == std::string_view::npos) {
    return;
  }
  const std::size_t text = asSource + kAsSource.size();
  const std::size_t begin = source + kEvent.size();
  if (begin > asSource || text > asText || asText > from) return;
  std::string_view name = part.substr(from + kFrom.size());
  name = name.substr(0, name.find_first_of(" \n"));
  for (RecordTable& table : catalogue.tables) {
    if (table.name != name) continue;
    table.sourceSql = part.substr(begin, asSource - begin);
    table.textSql = part.substr(text, asText - text);
  }
}

void ReadView(Connection& connection, Catalogue& catalogue) {
  Statement view;
  if (view.Prepare(connection.Handle(),
                   "SELECT sql FROM sqlite_master WHERE type='view' AND name='record'") != SQLITE_OK ||
      view.Step() != SQLITE_ROW) {
    return;
  }
  constexpr std::string_view kUnion = "UNION ALL ";
  std::string_view rest = view.Text(0);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(kUnion), rest.size());
    ReadViewPart(rest.substr(0, end), catalogue);
    rest.remove_prefix(std::min(end + kUnion.size(), rest.size()));
  }
}

bool HasColumn(const RecordTable& table, const std::string& name) {
  return std::any_of(table.columns.begin(), table.columns.end(),
                     [&name](const RecordColumn& column) { return column.name == name; });
}

// What `one` has and `other` has not.
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

bool ReadCatalogue(Connection& connection, Catalogue& catalogue) {
  Statement names;
  const int rc = names.Prepare(connection.Handle(),
                               "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE '%''%' "
                               "ORDER BY rowid");
  if (rc != SQLITE_OK) return false;
  catalogue.schemaVersion = static_cast<int>(connection.Integer("PRAGMA user_version", 0));
  int step = names.Step();
  for (; step == SQLITE_ROW; step = names.Step()) {
    RecordTable table;
    table.name = names.Text(0);
    if (ReadTable(connection, table)) catalogue.tables.push_back(table);
  }
  ReadView(connection, catalogue);
  return step == SQLITE_DONE;
}

const Catalogue& CurrentCatalogue() {
  static const Catalogue current = [] {
    Catalogue catalogue;
    Connection memory;
    if (memory.Open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) == SQLITE_OK) {
      (void)memory.Execute(store::CreateSchema().c_str());
      (void)ReadCatalogue(memory, catalogue);
    }
    catalogue.schemaVersion = store::kSchemaVersion;
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
