#include "StoreFixture.h"

namespace fs = std::filesystem;

namespace {

// Every case prepares what the earlier run left; the store that is opened then tells about it.
class PreviousRunTest : public StoreTest {
 protected:
  // "ended|file" and the last tick, as recorded by a run under this base path.
  std::string Told(const std::string& base, int number) {
    Open(base);
    Store().ReportShutdownDataAtStartup();
    Close();
    return Rows("SELECT ended,file,last_tick FROM previous_run", number);
  }
};

TEST_F(PreviousRunTest, ThereWasNone) {
  EXPECT_EQ(Told("metadata", 1), "none||0\n");
}

TEST_F(PreviousRunTest, AnEndThatFillsTheFileIsCleanToo) {
  options_.maxFileBytes = 131'072;
  Open();
  for (int i = 0; i < 200; ++i) Store().ReportStringData(e_Tag_Filler, std::string(1000, 'x').c_str());
  Store().ReportShutdownData();
  Close();
  EXPECT_FALSE(Exists(2)) << "it would not tell of the end";
  EXPECT_EQ(Told("metadata", 2), "clean|metadata.000001.db|10000\n");
}

TEST_F(PreviousRunTest, ItEndedCleanly) {
  Open();
  After(2000);
  Store().ReportShutdownData();
  Close();
  EXPECT_EQ(Told("metadata", 2), "clean|metadata.000001.db|12000\n");
  EXPECT_EQ(Told("metadata", 3), "cut off|metadata.000002.db|12000\n")
      << "closed without saying that it ends";
}

TEST_F(PreviousRunTest, ItWasCutOffAndItsLogIsFoldedIn) {
  Open();
  Temperature(1);
  After(3000);
  Temperature(2);
  After(100);
  CopyFilesTo("cut/metadata");
  Close();
  ASSERT_TRUE(fs::exists(dir_.Path("cut/metadata.000001.db-wal")));
  EXPECT_EQ(Told("cut/metadata", 2), "cut off|metadata.000001.db|10000\n");
  EXPECT_FALSE(fs::exists(dir_.Path("cut/metadata.000001.db-wal")));
  EXPECT_EQ(Rows("PRAGMA journal_mode", 1), "delete\n");
  EXPECT_EQ(Temperatures(1), "1\n");
  EXPECT_EQ(Rows("SELECT last_seq, last_utc_ms FROM previous_run", 2),
            "2|" + std::to_string(kNoonUtcMs) + "\n");
}

// What is left of files when the run ends while they are being begun.
TEST_F(PreviousRunTest, FilesThatWereOnlyBegunArePassedOver) {
  Open();
  Store().ReportShutdownData();
  Close();
  Connection(dir_.Write("metadata.000002.db", "")).Rows("PRAGMA application_id=1296909378");
  fs::copy_file(File(1), File(3));
  std::string deletions;
  for (const char* table : {"clock", "run_end"}) deletions += "DELETE FROM " + std::string(table) + ";";
  Connection(File(3)).Rows(deletions + "UPDATE progress SET last_seq=0, last_tick=0");
  LogLines lines;
  dir_.Write("metadata.000004.db", "");
  EXPECT_EQ(Told("metadata", 5), "clean|metadata.000001.db|10000\n");
  EXPECT_EQ(lines.Take(), "");
}

TEST_F(PreviousRunTest, ARunThatOpensAgainTellsOfTheOneBefore) {
  Open();
  Brakes(true);
  Store().ReportShutdownData();
  Store().Close();
  ASSERT_TRUE(Store().Open());
  Store().ReportShutdownDataAtStartup();
  Close();
  EXPECT_EQ(Rows("SELECT source,text FROM timeline", 2),
            "clock|set by system\nprevious run|clean metadata.000001.db at tick 10000\n")
      << "nothing of the other run is told as if it still held";
}

struct DamageCase {
  const char* name;
  void (*damage)(const std::string& path);
};

void Overwrite(const std::string& path, std::streamoff offset, const std::string& bytes) {
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(offset);
  file << bytes;
}

class DamageTest : public PreviousRunTest, public testing::WithParamInterface<DamageCase> {};

TEST_P(DamageTest, IsSaidAndLeftAloneAndDoesNotReachThePresent) {
  Open();
  Store().ReportShutdownData();
  Close();
  GetParam().damage(File(1));
  const std::string before = dir_.Read("metadata.000001.db");

  LogLines lines;
  const std::string told = Told("metadata", 2);
  const std::string said = lines.Take();
  EXPECT_EQ(told.substr(0, told.rfind('|')), "unreadable|metadata.000001.db");
  EXPECT_NE(said.find("Left alone: "), std::string::npos) << said;
  EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
  EXPECT_EQ(dir_.Read("metadata.000001.db"), before);
  EXPECT_EQ(Rows("PRAGMA integrity_check", 2), "ok\n");
}

INSTANTIATE_TEST_SUITE_P(
    Files, DamageTest,
    testing::Values(
        DamageCase{"NoDatabase", [](const std::string& path) { Overwrite(path, 0, std::string(100, 'x')); }},
        DamageCase{"CutShort", [](const std::string& path) { fs::resize_file(path, 1500); }},
        DamageCase{"BrokenSchema",
                   [](const std::string& path) { Overwrite(path, 100, std::string(924, '\xFF')); }},
        DamageCase{"SomeoneElses",
                   [](const std::string& path) { Connection(path).Rows("PRAGMA application_id=1"); }},
        DamageCase{"WithoutProgress",
                   [](const std::string& path) { Connection(path).Rows("DELETE FROM progress"); }},
        DamageCase{"EndlessWork",
                   [](const std::string& path) {
                     Connection(path).Rows(
                         "DROP TABLE progress; CREATE VIEW progress AS WITH RECURSIVE n(last_seq) AS "
                         "(SELECT 1 UNION ALL SELECT 1 FROM n) SELECT count(*) AS last_seq FROM n");
                   }},
        DamageCase{"LogTooLong",
                   [](const std::string& path) {
                     std::ofstream(path + "-wal") << "x";
                     fs::resize_file(path + "-wal", (16U << 20) + 1);
                   }}),
    [](const auto& param) { return std::string(param.param.name); });

}  // namespace
