// docs/store.md agrees with the code.

#include <regex>

#include "Items.h"
#include "StoreFixture.h"
#include "items/ConfigurationItems.h"
#include "items/VideoMgrStreamQualityItem.h"

namespace {

// The first group of every match of the expression.
std::vector<std::string> Found(const std::string& text, const std::string& expression) {
  const std::regex regex(expression);
  std::vector<std::string> found;
  for (std::sregex_iterator it(text.begin(), text.end(), regex), end; it != end; ++it)
    found.push_back((*it)[1]);
  return found;
}

std::vector<std::string> Told(const std::string& expression) {
  std::ifstream file(STORE_DOCUMENT);
  return Found({std::istreambuf_iterator<char>(file), {}}, expression);
}

// The drive has everything that the queries ask for, except losses, a reader that pins the WAL, and a copy.
TEST_F(StoreTest, EachQueryOfTheDocumentFindsSomething) {
  Open();
  Store().ReportShutdownDataAtStartup();
  Store().ReportOfficerInfo({}, true);
  Store().ReportVehicleInfo({}, true);
  Store().ReportDepartmentInfo({}, true);
  Store().ReportSystemInfo({}, true);
  Store().ReportVideoRecordingSettings({}, true);
  VideoMgrStreamQualityItem quality;
  Store().ReportStreamQualityItem(quality, true);
  Store().ReportGps(GpsAt(43'200'000, clock_.tick), clock_.tick, true);
  Store().ReportSpeed(1, 50, true, clock_.tick, e_Tag_None);
  Store().ReportStateData(e_Tag_CrashDetected, true, clock_.tick);
  Close();

  int queries = 0;
  for (const std::string& block : Told("```sql\n([^`]*)```")) {
    std::istringstream statements(block);
    for (std::string query; std::getline(statements, query, ';');) {
      if (query.find("SELECT") == std::string::npos) continue;
      ++queries;
      const bool mayBeEmpty = std::regex_search(query, std::regex("FROM (loss|log_pinned|copy)"));
      EXPECT_EQ(Rows("SELECT count(*)>=" + std::string(mayBeEmpty ? "0" : "1") + " FROM (" + query + ")"),
                "1\n")
          << query;
    }
  }
  EXPECT_GE(queries, 12);
}

// Rows "| `table` | `column`, `column` (words) | …" list the columns after the common columns.
TEST_F(StoreTest, TheTablesHaveTheColumnsAndTheSchemaTheNumberThatTheDocumentTells) {
  Open();
  std::string tables;
  for (const std::string& row : Told("\n\\| (`[a-z_]+` \\| [^|\n]*)\\|[^|\n]*\\|")) {
    const auto names = Found(std::regex_replace(row, std::regex("\\([^)]*\\)"), ""), "`([a-z0-9_]+)`");
    const std::string& table = names.at(0);
    std::string columns = "seq,tick,sender_tick,event";
    for (std::size_t i = 1; i < names.size(); ++i) columns += "," + names[i];
    EXPECT_EQ(Rows("SELECT group_concat(name) FROM pragma_table_info('" + table + "')"), columns + "\n");
    tables += table + "\n";
  }
  EXPECT_EQ(tables, Rows("SELECT name FROM sqlite_schema WHERE type='table' AND name NOT IN "
                         "('tag_name','progress','run','seal') "
                         "ORDER BY rowid"));
  EXPECT_EQ(Told("`user_version`, now ([0-9]+)[.]").at(0) + "\n", Rows("PRAGMA user_version"));
}

}  // namespace
