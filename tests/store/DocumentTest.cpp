// docs/store.md says what is true.

#include <regex>

#include "StoreFixture.h"
#include "items/ConfigurationItems.h"
#include "items/GpsStatusItem.h"
#include "items/VideoMgrStreamQualityItem.h"

namespace {

std::string Document() {
  std::ifstream file(STORE_DOCUMENT);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The statements of all ```sql blocks.
std::vector<std::string> Queries() {
  const std::string text = Document();
  const std::string begin = "```sql\n";
  std::vector<std::string> queries;
  for (std::size_t at = 0; (at = text.find(begin, at)) != std::string::npos;) {
    at += begin.size();
    std::istringstream block(text.substr(at, text.find("```", at) - at));
    for (std::string query; std::getline(block, query, ';');) {
      if (query.find("SELECT") != std::string::npos) queries.push_back(query);
    }
  }
  return queries;
}

class DocumentTest : public StoreTest {
 protected:
  // A drive with everything that the queries ask for: a crash, a lock that costs records, a reader that
  // pins the log.
  void Record() {
    options_.maxPendingBytes = 65'536;
    Open();
    Store().ReportShutdownDataAtStartup();
    Store().ReportOfficerInfo({}, true);
    Store().ReportVehicleInfo({}, true);
    Store().ReportDepartmentInfo({}, true);
    Store().ReportSystemInfo({}, true);
    Store().ReportVideoRecordingSettings({}, true);
    VideoMgrStreamQualityItem quality;
    Store().ReportStreamQualityItem(quality, true);
    GpsStatusItem position;
    position.quality = position.valid = 1;
    position.utcDate = 20240501;
    position.tick = clock_.tick;
    Store().ReportGps(position, position.tick, true);
    Store().ReportSpeed(1, 50, true, clock_.tick, e_Tag_None);
    Store().ReportStateData(e_Tag_CrashDetected, true, clock_.tick);
    After(500);
    Connection other(File(1));
    other.Rows("BEGIN; SELECT count(*) FROM string");
    Texts(5'000);  // the log passes its bound
    other.Rows("COMMIT; BEGIN IMMEDIATE");
    Texts(100);
    other.Rows("COMMIT");
    After(500);
    Close();
  }

 private:
  void Texts(int count) {
    const std::string text(1000, 'x');
    for (int i = 0; i < count; ++i) Store().ReportStringData(e_Tag_Filler, text.c_str());
    After(500);
  }
};

TEST_F(DocumentTest, EachQueryFindsSomething) {
  Record();
  const std::vector<std::string> queries = Queries();
  EXPECT_GE(queries.size(), 12U);
  for (const std::string& query : queries) {
    const bool ofACopy = query.find("FROM copy") != std::string::npos;  // has none in a recording
    EXPECT_EQ(Rows("SELECT count(*)>=" + std::string(ofACopy ? "0" : "1") + " FROM (" + query + ")"), "1\n")
        << query;
  }
}

// Rows "| `table` | `column`, `column` (words) | …" tell the columns that follow the common ones.
TEST_F(DocumentTest, TheTablesHaveTheColumnsThatItTells) {
  Open();
  const std::string text = Document();
  const std::regex row("\n\\| `([a-z_]+)` \\| ([^|\n]*)\\|[^|\n]*\\|");
  const std::regex words("\\([^)]*\\)");
  const std::regex column("`([a-z0-9_]+)`");
  std::string tables;
  for (std::sregex_iterator it(text.begin(), text.end(), row), end; it != end; ++it) {
    const std::string told = std::regex_replace((*it)[2].str(), words, "");
    std::string columns = "seq,tick,sender_tick,event";
    for (std::sregex_iterator name(told.begin(), told.end(), column); name != end; ++name)
      columns += "," + (*name)[1].str();
    const std::string table = (*it)[1];
    EXPECT_EQ(Rows("SELECT group_concat(name) FROM pragma_table_info('" + table + "')"), columns + "\n")
        << table;
    tables += table + "\n";
  }
  EXPECT_EQ(tables,
            Rows("SELECT name FROM sqlite_schema WHERE type='table' AND name NOT IN ('tag_name','progress') "
                 "ORDER BY rowid"));
}

TEST_F(DocumentTest, TheSchemaHasTheNumberThatItTells) {
  Open();
  EXPECT_NE(Document().find("`user_version`, now " + Rows("PRAGMA user_version").substr(0, 1) + "."),
            std::string::npos);
}

}  // namespace
