#include "StoreFixture.h"
#include "WalFiles.h"
#include "support/LogCapture.h"
#include "support/Schema1.h"

namespace fs = std::filesystem;

namespace {

// Every case prepares the files of an earlier run. The next run then records how that run ended.
class PreviousRunTest : public StoreTest {
 protected:
  void RunInOrder() {
    Open();
    After(2000);
    Store().ReportShutdownData();
    Close();
  }
  // The record about the previous run, from a run under this base path.
  std::string Told(const std::string& base, int number) {
    Open(base);
    Store().ReportShutdownDataAtStartup();
    Close();
    return Rows("SELECT ended,file,last_tick,last_utc_ms FROM previous_run", number);
  }
};

TEST_F(PreviousRunTest, ThereWasNoneOrItEndedCleanlyOrNot) {
  EXPECT_EQ(Told("none", 1), "none||0|0\n");
  RunInOrder();
  EXPECT_EQ(Told("metadata", 2), "clean|metadata.000001.db|12000|1714564802000\n");
  EXPECT_EQ(Told("metadata", 3), "cut off|metadata.000002.db|12000|1714564802000\n")
      << "closed without saying that it ends";
}

TEST_F(PreviousRunTest, AnEndThatFillsTheFileIsCleanToo) {
  options_.maxFileBytes = 131'072;
  Open();
  for (int i = 0; i < 200; ++i) Store().ReportStringData(e_Tag_Filler, std::string(1000, 'x').c_str());
  Store().ReportShutdownData();
  Close();
  EXPECT_FALSE(Exists(2)) << "it would not tell of the end";
  EXPECT_EQ(Told("metadata", 2), "clean|metadata.000001.db|10000|1714564800000\n");
}

TEST_F(PreviousRunTest, ARecordingOfSchema1IsRead) {
  ASSERT_EQ(WriteSchema1(dir_.Write("metadata.000001.db", "")), "");
  EXPECT_EQ(Told("metadata", 2), "clean|metadata.000001.db|14000|1714564804000\n");
}

// The run ended while it began these files.
TEST_F(PreviousRunTest, FilesThatWereOnlyBegunArePassedOver) {
  RunInOrder();
  Connection(dir_.Write("metadata.000002.db", "")).Rows("PRAGMA application_id=1296909378");
  fs::copy_file(File(1), File(3));
  Connection(File(3)).Rows("DELETE FROM clock; DELETE FROM run_end; DELETE FROM seal");
  dir_.Write("metadata.000004.db", "");
  const LogCapture log;
  EXPECT_EQ(Told("metadata", 5), "clean|metadata.000001.db|12000|1714564802000\n");
  EXPECT_EQ(log.Text(), "");
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

void Overwrite(const std::string& path, std::streamoff offset, const std::string& bytes) {
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(offset);
  file << bytes;
}

TEST_F(PreviousRunTest, DamageIsSaidAndLeftAloneAndDoesNotReachThePresent) {
  alters_ = true;
  RunInOrder();
  const std::string sound = dir_.Read("metadata.000001.db");
  const struct {
    std::string what;
    void (*damage)(const std::string& path);
  } kCases[] = {
      {"no database", [](auto& path) { Overwrite(path, 0, std::string(100, 'x')); }},
      {"cut short", [](auto& path) { fs::resize_file(path, 1500); }},
      {"broken schema", [](auto& path) { Overwrite(path, 100, std::string(924, '\xFF')); }},
      {"someone else's", [](auto& path) { Connection(path).Rows("PRAGMA application_id=1"); }},
      {"no recording, with a WAL",
       [](auto& path) {
         const WalFiles other = MakeWal(4);
         std::ofstream(path, std::ios::binary) << other.database;
         std::ofstream(path + "-wal", std::ios::binary) << other.wal;
       }},
      {"without progress",
       [](auto& path) { Connection(path).Rows("DELETE FROM progress; DELETE FROM seal"); }},
      {"endless work",
       [](auto& path) {
         Connection(path).Rows(
             "DROP TABLE progress; CREATE VIEW progress AS WITH RECURSIVE n(last_seq) AS "
             "(SELECT 1 UNION ALL SELECT 1 FROM n) SELECT count(*) AS last_seq FROM n");
       }},
      {"WAL too long",
       [](auto& path) {
         std::ofstream(path + "-wal") << "x";
         fs::resize_file(path + "-wal", (16U << 20) + 1);
       }},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    c.damage(dir_.Write(c.what + ".000001.db", sound));
    const std::string before = dir_.Read(c.what + ".000001.db");
    const std::string wal = dir_.Read(c.what + ".000001.db-wal");
    const LogCapture log;
    EXPECT_TRUE(Told(c.what, 2).starts_with("unreadable|" + c.what + ".000001.db|"));
    EXPECT_EQ(log.Lines("Left alone: "), 1);
    EXPECT_EQ(log.Lines(""), 1) << log.Text();
    EXPECT_TRUE(dir_.Read(c.what + ".000001.db") == before && dir_.Read(c.what + ".000001.db-wal") == wal);
    EXPECT_FALSE(fs::exists(dir_.Path(c.what + ".000001.db-shm")));
    EXPECT_EQ(Rows("PRAGMA integrity_check", 2), "ok\n");
  }
}

}  // namespace
