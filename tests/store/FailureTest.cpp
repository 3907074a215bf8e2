#include <sys/resource.h>

#include <csignal>

#include "StoreFixture.h"

namespace {

// Another program that holds the write lock stands for every reason why writing fails.

TEST_F(StoreTest, WhatCannotBeWrittenIsWrittenOnceWhenWritingWorksAgain) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  for (short i = 1; i <= 5; ++i) {
    Temperature(i);
    Store().ReportBookmark(clock_.tick);
    After(500);
  }
  EXPECT_EQ(Temperatures(), "");
  other.Rows("COMMIT");
  After(500);
  EXPECT_EQ(Temperatures(), "1\n2\n3\n4\n5\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "5\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM loss"), "0\n");
}

// The size to which this process may write files.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
};

TEST_F(StoreTest, AFileThatCannotGrowKeepsTheRecordsWaiting) {
  Open();
  Store().ReportBookmark(0);
  {
    const FileSizeLimit limit(std::filesystem::file_size(File(1) + "-wal") + 2000);
    for (unsigned int i = 1; i <= 2000; ++i) {
      Store().ReportBookmark(i);
      if (i % 20 == 0) After(100);
    }
    EXPECT_NE(Rows("SELECT max(sender_tick) FROM bookmark"), "2000\n");
  }
  After(500);
  EXPECT_EQ(Rows("SELECT min(sender_tick), max(sender_tick), count(*) FROM bookmark"), "0|2000|2001\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM loss"), "0\n");
  EXPECT_EQ(Rows("PRAGMA integrity_check"), "ok\n");
}

TEST_F(StoreTest, FailureAndRecoveryAreSaidOnceEach) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  LogLines lines;
  for (int i = 0; i < 5; ++i) {
    Store().ReportBookmark(1);
    After(1000);
  }
  const std::string failing = lines.Take();
  EXPECT_NE(failing.find("DataStore:"), std::string::npos);
  EXPECT_NE(failing.find(" fails: database is locked"), std::string::npos) << failing;
  EXPECT_EQ(failing.find('\n'), failing.size() - 1) << failing;

  other.Rows("COMMIT");
  LogLines more;
  for (int i = 0; i < 5; ++i) {
    Store().ReportBookmark(1);
    After(1000);
  }
  const std::string working = more.Take();
  EXPECT_NE(working.find(" works again"), std::string::npos) << working;
  EXPECT_EQ(working.find('\n'), working.size() - 1) << working;
}

TEST_F(StoreTest, ACriticalRecordThatCouldNotBeWrittenIsTriedAgainSoon) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  Store().ReportBookmark(1);
  other.Rows("COMMIT");
  After(49);
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "0\n");
  After(1);
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "1\n");
}

TEST_F(StoreTest, ACriticalRecordHastensTheNextAttempt) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  Temperature(1);
  After(500);
  Store().ReportBookmark(1);
  other.Rows("COMMIT");
  After(50);
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "1\n");
}

TEST_F(StoreTest, BeyondTheBoundTheOldestGoAndAreAccountedFor) {
  options_.maxPendingBytes = 16'384;
  Open();
  {
    Connection other(File(1));
    other.Rows("BEGIN IMMEDIATE");
    Store().ReportStateData(e_Tag_RecordingStarted, true, 1);
    for (short i = 0; i < 1000; ++i) {
      clock_.tick += 1;
      Store().TimerTick(clock_.tick);
      Temperature(i);
      Store().ReportSpeed(1, 5, true, 1, e_Tag_None);
    }
  }
  Close();

  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE source='recording'"), "started\n");
  EXPECT_EQ(Rows("SELECT max(temperature), max(temperature)-min(temperature)+1=count(*) FROM temperature"),
            "999|1\n")
      << "the newest are there, without a gap";
  EXPECT_EQ(Rows("SELECT lost_table, from_tick, count + (SELECT count(*) FROM temperature) FROM loss "
                 "WHERE lost_table='temperature'"),
            "temperature|10001|1000\n");
  EXPECT_EQ(Rows("SELECT count + (SELECT count(*) FROM speed) FROM loss WHERE lost_table='speed'"), "1000\n");
  EXPECT_EQ(Rows("SELECT l.to_tick+1 = (SELECT min(tick) FROM temperature) FROM loss l "
                 "WHERE lost_table='temperature'"),
            "1\n");
  EXPECT_EQ(Rows("SELECT text LIKE 'lost % records of speed from tick 10001 to %' FROM timeline "
                 "WHERE text LIKE '%speed%'"),
            "1\n");
}

TEST_F(StoreTest, WhenOnlyCriticalRecordsAreLeftTheOldestOfThemGo) {
  options_.maxPendingBytes = 16'384;
  Open();
  {
    Connection other(File(1));
    other.Rows("BEGIN IMMEDIATE");
    for (unsigned int i = 0; i < 1000; ++i) Store().ReportBookmark(i);
  }
  Close();
  EXPECT_EQ(Rows("SELECT max(sender_tick) FROM bookmark"), "999\n");
  EXPECT_EQ(Rows("SELECT count + (SELECT count(*) FROM bookmark) FROM loss"), "1000\n");
}

TEST_F(StoreTest, WhatIsStillPendingAtTheEndIsSaid) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  Temperature(1);
  Temperature(2);
  LogLines lines;
  Close();
  EXPECT_NE(lines.Take().find("Lost at the end: 2 records"), std::string::npos);
}

}  // namespace
