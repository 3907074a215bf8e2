// Compares a recording with changed copies of it.
#include "ReaderFixture.h"

using testing::HasSubstr;

namespace {

class DiffTest : public ReaderTest {
 protected:
  // Compares the recording with a copy that the SQL changed.
  Ran DiffAfter(const std::string& sql, const std::vector<std::string>& options = {}) {
    const std::string copy = dir_.Write("copy/metadata.000001.db", dir_.Read("metadata.000001.db"));
    EXPECT_EQ(Connection(copy).Rows(sql), "") << sql;
    std::vector<std::string> arguments{"diff", File(1), copy};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Metadata(arguments);
  }
};

struct Change {
  const char* sql;
  const char* said;  // the counts, and how many records are alike
  const char* first = "";
  std::vector<std::string> options = {};
};

// Of ReaderTest::Drive: records 3 and 9 are brakes, 8 a temperature, 7 and 11 bookmarks.
const Change kChanges[] = {
    {"UPDATE temperature SET temperature=-41", "temperature 0      values 1\n10 records are alike, 1 d",
     "First difference, temperature 0: the values differ\n  A  record 8, 2024-05-01T12:00:01.100Z, tick "
     "11100, "
     "sender tick 11100: event sensor 0 temperature -40\n  B  record 8"},
    {"UPDATE bookmark SET sender_tick=sender_tick+1000 WHERE seq=7",
     "bookmark           ticks 1\n10 records are alike, 1 d",
     "bookmark: the sender ticks differ by 1000 ms\n"},
    {"UPDATE state SET seq=99 WHERE seq=3; UPDATE temperature SET seq=3; UPDATE state SET seq=8 WHERE seq=99",
     "brakes             order 1\n11 records are alike, 1 difference\n",
     "First difference, brakes: the order differs\n"},
    {"UPDATE state SET seq=99 WHERE "
     "seq=3; UPDATE state SET seq=3 WHERE seq=9; UPDATE state SET seq=9 WHERE seq=99",
     "brakes             order 1\n", "First difference, brakes: the order differs\n"},
    {"DELETE FROM temperature", "temperature 0      only in A 1\n10 records are alike, 1 d",
     "only A has the record\n  A  record 8"},
    {"INSERT INTO bookmark VALUES(50,12100,12100,1)",
     "bookmark           only in B 1\n11 records are alike, 1 d", "only B has the record\n  B  record 50"},
    {"UPDATE bookmark SET tick=tick+30 WHERE seq=7",
     "bookmark           arrivals 1\n",
     "First difference, bookmark: the arrivals differ by 30 ms\n",
     {"--tolerance", "20"}},
    {"UPDATE clock SET utc_ms=utc_ms+60000",
     "bookmark           UTC 2\n",
     "First difference, clock: the values differ\n",
     {"--clock"}},
};

TEST_F(DiffTest, FindsEachChangeNamesTheFirstAndCountsTheOthers) {
  Open();
  Drive();
  Store().ReportShutdownData();
  Close();
  for (const Change& change : kChanges) {
    SCOPED_TRACE(change.sql);
    const Ran ran = DiffAfter(change.sql, change.options);
    EXPECT_EQ(ran.status, 1) << ran.said;
    EXPECT_THAT(ran.out, HasSubstr(change.said));
    EXPECT_THAT(ran.out, HasSubstr(change.first));
  }
}

TEST_F(DiffTest, TellsProgramsTheSame) {
  Open();
  Drive();
  Close();
  const Ran ran = DiffAfter(
      "UPDATE bookmark SET sender_tick=sender_tick+1000 WHERE seq=7; DELETE FROM temperature", {"--json"});
  EXPECT_EQ(ran.status, 1) << ran.said;
  EXPECT_EQ(
      ran.out,
      R"({"runsInA":1,"runsInB":1,"runs":[{"run":1,"alike":8,"differences":2,"first":{"table":"bookmark",)"
      R"("source":"bookmark","kind":"ticks","ms":1000,)"
      R"("a":{"record":7,"time":"2024-05-01T12:00:00.800Z","tick":11100,"senderTick":10800,)"
      R"("content":"event"},)"
      R"("b":{"record":7,"time":"2024-05-01T12:00:01.800Z","tick":11100,"senderTick":11800,)"
      R"("content":"event"}},"sources":[)"
      R"({"source":"bookmark","values":0,"ticks":1,"order":0,"arrivals":0,"utc":0,"onlyInA":0,"onlyInB":0},)"
      R"({"source":"temperature 0","values":0,"ticks":0,"order":0,"arrivals":0,"utc":0,"onlyInA":1,)"
      R"("onlyInB":0}]}]})"
      "\n");
  const Ran alike = Metadata({"diff", File(1), File(1), "--json"});
  EXPECT_EQ(alike.status, 0);
  EXPECT_THAT(alike.out, HasSubstr(R"("differences":0,"first":null,"sources":[]}]})"));
}

// What is no difference: another start of the tick (here across its wrap), other arrivals, another clock, and
// sources that are left out.
TEST_F(DiffTest, LeavesOutWhatIsNoDifference) {
  Open();
  Drive();
  Close();
  std::string moved;
  for (const char* table : {"state", "bookmark", "speed", "camera", "temperature"}) {
    moved += "UPDATE " + std::string(table) + " SET tick=tick+5000, " +
             "sender_tick=(sender_tick+4294956000)%4294967296 WHERE sender_tick<4294967295;";
  }
  const Ran shifted = DiffAfter(moved + "UPDATE clock SET utc_ms=utc_ms+1000");
  EXPECT_EQ(shifted.status, 0) << shifted.out;
  EXPECT_EQ(shifted.out, "10 records are alike, 0 differences\n");
  EXPECT_EQ(DiffAfter("UPDATE bookmark SET tick=tick+30 WHERE seq=7", {"--tolerance", "30"}).status, 0);
  EXPECT_EQ(DiffAfter("DELETE FROM state; DELETE FROM bookmark", {"--ignore", "events,inputs"}).status, 0);
}

// Behind a stretch that only one recording has, the records meet again.
TEST_F(DiffTest, ContinuesBehindALongLoss) {
  Open();
  for (int i = 0; i < 6000; ++i) {
    After(10);
    Temperature(20 + i / 1000);
  }
  Close();
  const Ran ran = DiffAfter("DELETE FROM temperature WHERE seq BETWEEN 1500 AND 4499");
  EXPECT_THAT(ran.out, HasSubstr("temperature 0      only in A 3000\n3000 records are alike, 3000 d"));
}

TEST_F(DiffTest, ReportsTroubleWithTheStatusOfDiff) {
  Open();
  for (int i = 0; i < 1000; ++i) Temperature(i);  // in the last pages, which one case loses
  Close();
  const std::string good = File(1);
  const std::string whole = dir_.Read("metadata.000001.db");
  const std::pair<std::string, const char*> kCases[] = {
      {dir_.Path("nowhere.db"), "nowhere.db"},
      {dir_.Write("text.db", std::string(5000, 'x')), "text.db: file is not a database"},
      {dir_.Write("empty.db", ""), "empty.db: there is nothing to compare"},
      {dir_.Write("middle.db", whole.substr(0, 4096) + std::string(1024, 'x') + whole.substr(5120)),
       "middle.db: "},
      {dir_.Write("cut.db", whole.substr(0, whole.size() - 4096)), "cut.db: it is cut short"},
  };
  for (const auto& [path, said] : kCases) {
    const Ran ran = Metadata({"diff", good, path});
    EXPECT_EQ(ran.status, 2) << path << ran.out;
    EXPECT_THAT(ran.said, HasSubstr(said));
  }
}

}  // namespace
